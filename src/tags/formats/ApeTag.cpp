#include "tags/formats/ApeTag.h"

#include "tags/bytes/ByteReader.h"
#include "tags/fields/ItemCollector.h"
#include "tags/formats/CommentNames.h"
#include "tags/text/TagText.h"

namespace ApeTag {

namespace {

// Source: "APEv2" and "APE Tags Header" in the Hydrogenaudio knowledge base.
constexpr qint64 kFooterSize = 32;
constexpr quint32 kHasHeader = 1u << 31;
constexpr quint32 kIsHeader = 1u << 29;
constexpr quint32 kItemTypeMask = 6;
constexpr quint32 kTextType = 0;
constexpr quint32 kBinaryType = 2;
constexpr quint32 kVersionWithUtf8 = 2000;

std::optional<CommonKey> commonKey(const QString& key)
{
    if (key.compare(QLatin1StringView("COVER ART (FRONT)"), Qt::CaseInsensitive) == 0)
        return CommonKey::Artwork;
    return CommentNames::commonKey(key);
}

void addItem(const QString& key, quint32 type, quint32 version, QByteArrayView value, ItemCollector& items)
{
    const FieldName name{QLatin1StringView("ape"), key, commonKey(key)};
    const bool isArtwork = name.commonKey == CommonKey::Artwork;
    if (type == kBinaryType && isArtwork) {
        // A file name and a zero byte stand before the picture.
        const qsizetype zero = value.indexOf('\0');
        if (zero >= 0 && zero + 1 < value.size())
            items.addData(name, value.sliced(zero + 1).toByteArray());
    } else if (type == kTextType && !isArtwork) {
        if (version < kVersionWithUtf8)
            items.addLegacyText(name, TagText::untilZero(value));
        else if (!TagText::isUtf8(value))
            items.addLegacyText(name, value);
        else
            items.addText(name, TagText::joined(TagText::fromUtf8(value)));
    }
}

void readItems(QByteArrayView bytes, quint32 version, ItemCollector& items)
{
    ByteReader reader(bytes);
    while (!reader.isAtEnd()) {
        const quint32 size = reader.u32le();
        const quint32 flags = reader.u32le();
        const QByteArrayView key = TagText::untilZero(bytes.sliced(reader.position()));
        reader.skip(key.size() + 1);
        const QByteArrayView value = reader.bytes(size);
        if (reader.hasFailed())
            return;
        addItem(QString::fromLatin1(key), flags & kItemTypeMask, version, value, items);
    }
}

} // namespace

void read(ByteRange& range, ItemCollector& items)
{
    const QByteArray footer = range.read(range.size() - kFooterSize, kFooterSize);
    ByteReader reader(footer);
    if (range.size() < kFooterSize || reader.bytes(8) != QByteArrayView("APETAGEX"))
        return;
    const quint32 version = reader.u32le();
    const qint64 size = reader.u32le(); // of items and footer, without the header
    reader.skip(4);                     // number of items: the size says it all
    const quint32 flags = reader.u32le();
    const qint64 fullSize = size + (flags & kHasHeader ? kFooterSize : 0);
    if (flags & kIsHeader || size < kFooterSize || fullSize > range.size())
        return;
    readItems(range.read(range.size() - size, size - kFooterSize), version, items);
    range.end -= fullSize;
}

} // namespace ApeTag
