#include "tags/formats/VorbisComment.h"

#include "tags/bytes/ByteReader.h"
#include "tags/fields/ItemCollector.h"
#include "tags/formats/CommentNames.h"

namespace VorbisComment {

namespace {

constexpr QLatin1StringView kFormat("vorbis");

std::optional<CommonKey> commonKey(const QString& upperKey)
{
    return upperKey == QLatin1StringView("DESCRIPTION") ? CommonKey::Description : CommentNames::commonKey(upperKey);
}

/// Empty if the text is broken. Line breaks in it do no harm.
QByteArray fromBase64(QByteArrayView value)
{
    const auto decoded = QByteArray::fromBase64Encoding(value.toByteArray().replace('\r', "").replace('\n', ""),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? decoded.decoded : QByteArray();
}

void addComment(QByteArrayView comment, ItemCollector& items)
{
    const qsizetype equals = comment.indexOf('=');
    if (equals <= 0)
        return;
    const QString key = QString::fromUtf8(comment.first(equals)).toUpper();
    const QByteArrayView value = comment.sliced(equals + 1);
    if (key == QLatin1StringView("METADATA_BLOCK_PICTURE")) {
        readPicture(fromBase64(value), items);
    } else if (key == QLatin1StringView("COVERART")) {
        const QByteArray picture = fromBase64(value);
        if (!picture.isEmpty())
            items.addData({kFormat, key, CommonKey::Artwork}, picture);
    } else {
        items.addUtf8({kFormat, key, commonKey(key)}, value);
    }
}

} // namespace

void read(QByteArrayView block, ItemCollector& items)
{
    ByteReader reader(block);
    reader.skip(reader.u32le()); // the writing program's name
    const quint32 count = reader.u32le();
    for (quint32 index = 0; index < count && !reader.isAtEnd(); ++index) {
        const QByteArrayView comment = reader.bytes(reader.u32le());
        if (!reader.hasFailed())
            addComment(comment, items);
    }
}

void readPicture(QByteArrayView block, ItemCollector& items)
{
    ByteReader reader(block);
    reader.skip(4);              // type: any picture may be the cover
    reader.skip(reader.u32be()); // media type
    reader.skip(reader.u32be()); // description
    reader.skip(16);             // width, height, depth, colours
    const quint32 size = reader.u32be();
    // Pictures beyond the block's 24-bit size exist with a size field that tells the truth; what is there is taken.
    const QByteArrayView picture = reader.bytes(std::min<qint64>(size, reader.remaining()));
    if (!picture.isEmpty())
        items.addData({kFormat, QStringLiteral("METADATA_BLOCK_PICTURE"), CommonKey::Artwork}, picture.toByteArray());
}

} // namespace VorbisComment
