#include "tags/writing/VorbisCommentWriter.h"

#include "core/model/AudioTags.h"
#include "tags/bytes/ByteReader.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/FieldNames.h"

namespace VorbisCommentWriter {

using ByteOrder::big32;
using ByteOrder::little32;

namespace {

struct Key {
    const char* name;
    QString AudioTags::*value;
};
constexpr Key kKeys[] = {
    {"TITLE", &AudioTags::title},       {"ARTIST", &AudioTags::artist},
    {"ALBUM", &AudioTags::album},       {"ALBUMARTIST", &AudioTags::albumArtist},
    {"GENRE", &AudioTags::genre},       {"DATE", &AudioTags::year},
    {"TRACKNUMBER", &AudioTags::track}, {"COMMENT", &AudioTags::comment},
    {"BPM", &AudioTags::bpm},           {"INITIALKEY", &AudioTags::musicalKey},
};

QByteArray withLength(const QByteArray& bytes)
{
    return little32(static_cast<quint32>(bytes.size())) + bytes;
}

struct List {
    quint32 count = 0;
    QByteArray bytes;

    void add(const QByteArray& comment)
    {
        ++count;
        bytes += withLength(comment);
    }
    void add(const QByteArrayList& comments)
    {
        for (const QByteArray& comment : comments)
            add(comment);
    }
    QByteArray asOwnBlock() const
    {
        return count == 0 ? QByteArray() : withLength(QByteArrayLiteral("Velmora")) + little32(count) + bytes;
    }
};

QByteArrayList newTexts(const TagEdits& edits)
{
    AudioTags tags;
    tags.title = edits.newTitle().value_or(QString());
    tags.album = edits.newAlbum().value_or(QString());
    return texts(tags);
}

bool isChosen(QByteArrayView comment, CleanerFields fields)
{
    const qsizetype equals = comment.indexOf('=');
    return equals > 0 && FieldNames::isCommentKey(QString::fromUtf8(comment.first(equals)), fields);
}

} // namespace

QByteArrayList texts(const AudioTags& tags)
{
    QByteArrayList list;
    for (const Key& key : kKeys) {
        if (const QString& value = tags.*key.value; !value.isEmpty())
            list.append(QByteArray(key.name) + '=' + value.toUtf8());
    }
    return list;
}

QByteArray comments(const AudioTags& tags)
{
    List list;
    list.add(texts(tags));
    return list.asOwnBlock();
}

std::optional<QByteArray> filtered(QByteArrayView block, const TagEdits& edits)
{
    const IsDropped isDropped = [&](QByteArrayView comment) { return isChosen(comment, edits.fields); };
    return filtered(block, isDropped, newTexts(edits));
}

std::optional<QByteArray> filtered(QByteArrayView block, const IsDropped& isDropped, const QByteArrayList& added)
{
    ByteReader reader(block);
    reader.skip(reader.u32le()); // the writing program's name
    const QByteArrayView vendor = block.first(reader.hasFailed() ? 0 : reader.position());
    const quint32 count = reader.u32le();
    List list;
    for (quint32 index = 0; index < count && !reader.hasFailed(); ++index) {
        const QByteArrayView comment = reader.bytes(reader.u32le());
        if (!reader.hasFailed() && !isDropped(comment))
            list.add(comment.toByteArray());
    }
    if (reader.hasFailed())
        return std::nullopt;
    list.add(added);
    return vendor.toByteArray() + little32(list.count) + list.bytes + reader.rest().toByteArray();
}

QByteArray added(const TagEdits& edits)
{
    List list;
    list.add(newTexts(edits));
    return list.asOwnBlock();
}

QByteArray picture(const QByteArray& artwork)
{
    constexpr quint32 kFrontCover = 3;
    const QByteArray mime =
        artwork.startsWith("\x89PNG") ? QByteArrayLiteral("image/png") : QByteArrayLiteral("image/jpeg");
    const QByteArray noDescription = big32(0);
    const QByteArray unknownShape(4 * 4, '\0'); // width, height, depth, colours
    return big32(kFrontCover) + big32(static_cast<quint32>(mime.size())) + mime + noDescription + unknownShape +
           big32(static_cast<quint32>(artwork.size())) + artwork;
}

} // namespace VorbisCommentWriter
