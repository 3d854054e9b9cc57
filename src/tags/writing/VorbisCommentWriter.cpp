#include "tags/writing/VorbisCommentWriter.h"

#include "core/model/AudioTags.h"
#include "tags/bytes/ByteReader.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/FieldNames.h"

#include <QByteArrayList>

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
    void addTexts(const TagEdits& edits)
    {
        if (const auto title = edits.newTitle())
            add("TITLE=" + title->toUtf8());
        if (const auto album = edits.newAlbum())
            add("ALBUM=" + album->toUtf8());
    }
    QByteArray asOwnBlock() const
    {
        return count == 0 ? QByteArray() : withLength(QByteArrayLiteral("Velmora")) + little32(count) + bytes;
    }
};

bool isChosen(QByteArrayView comment, CleanerFields fields)
{
    const qsizetype equals = comment.indexOf('=');
    return equals > 0 && FieldNames::isCommentKey(QString::fromUtf8(comment.first(equals)), fields);
}

} // namespace

QByteArray comments(const AudioTags& tags)
{
    List list;
    for (const Key& key : kKeys) {
        if (const QString& value = tags.*key.value; !value.isEmpty())
            list.add(QByteArray(key.name) + '=' + value.toUtf8());
    }
    return list.asOwnBlock();
}

std::optional<QByteArray> filtered(QByteArrayView block, const TagEdits& edits)
{
    ByteReader reader(block);
    reader.skip(reader.u32le()); // the writing program's name
    const QByteArrayView vendor = block.first(reader.hasFailed() ? 0 : reader.position());
    const quint32 count = reader.u32le();
    List list;
    for (quint32 index = 0; index < count && !reader.hasFailed(); ++index) {
        const QByteArrayView comment = reader.bytes(reader.u32le());
        if (!reader.hasFailed() && !isChosen(comment, edits.fields))
            list.add(comment.toByteArray());
    }
    if (reader.hasFailed())
        return std::nullopt;
    list.addTexts(edits);
    return vendor.toByteArray() + little32(list.count) + list.bytes + reader.rest().toByteArray();
}

QByteArray added(const TagEdits& edits)
{
    List list;
    list.addTexts(edits);
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
