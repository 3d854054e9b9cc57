#include "tags/writing/ApeFilter.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/FieldNames.h"

namespace ApeFilter {

namespace {

// Source: "APEv2" and "APE Tags Header" in the Hydrogenaudio knowledge base.
constexpr quint32 kIsHeader = 1u << 29;
constexpr qsizetype kSizeOffset = 12; ///< of the size in a block; the number of items follows

struct Items {
    QByteArray bytes;
    quint32 count = 0;
};

std::optional<Items> keptItems(QByteArrayView area, quint32 count, const IsDropped& isDropped)
{
    Items kept;
    ByteReader reader(area);
    for (quint32 item = 0; item < count; ++item) {
        const qsizetype begin = reader.position();
        const quint32 size = reader.u32le();
        reader.skip(4); // flags
        if (reader.hasFailed())
            return std::nullopt;
        const qsizetype keySize = area.sliced(reader.position()).indexOf('\0');
        if (keySize < 0)
            return std::nullopt;
        const QByteArrayView key = reader.bytes(keySize);
        reader.skip(1);
        reader.skip(size);
        if (reader.hasFailed())
            return std::nullopt;
        const QByteArrayView whole = area.sliced(begin, reader.position() - begin);
        if (isDropped(QString::fromUtf8(key), whole))
            continue;
        kept.bytes += whole;
        ++kept.count;
    }
    return reader.remaining() == 0 ? std::optional(kept) : std::nullopt;
}

QByteArray patched(QByteArrayView block, const Items& items)
{
    const auto size = static_cast<quint32>(items.bytes.size() + kBlockSize);
    QByteArray bytes = block.toByteArray();
    return bytes.replace(kSizeOffset, 8, ByteOrder::little32(size) + ByteOrder::little32(items.count));
}

} // namespace

std::optional<Block> block(QByteArrayView bytes)
{
    ByteReader reader(bytes);
    if (reader.bytes(8) != QByteArrayView("APETAGEX"))
        return std::nullopt;
    reader.skip(4); // version
    Block block;
    block.size = reader.u32le();
    block.itemCount = reader.u32le();
    block.isHeader = (reader.u32le() & kIsHeader) != 0;
    return block;
}

std::optional<QByteArray> filtered(QByteArrayView tag, CleanerFields fields)
{
    return filtered(tag,
                    [&](const QString& key, QByteArrayView /*item*/) { return FieldNames::isCommentKey(key, fields); });
}

std::optional<QByteArray> filtered(QByteArrayView tag, const IsDropped& isDropped)
{
    if (tag.size() < kBlockSize)
        return std::nullopt;
    const std::optional<Block> footer = block(tag.last(kBlockSize));
    if (!footer || footer->size < kBlockSize)
        return std::nullopt;
    const bool hasHeader = tag.size() == footer->size + kBlockSize;
    if (hasHeader ? !block(tag.first(kBlockSize)) : tag.size() != footer->size)
        return std::nullopt;
    const QByteArrayView area = tag.chopped(kBlockSize).sliced(hasHeader ? kBlockSize : 0);
    const std::optional<Items> kept = keptItems(area, footer->itemCount, isDropped);
    if (!kept)
        return std::nullopt;
    const QByteArray header = hasHeader ? patched(tag.first(kBlockSize), *kept) : QByteArray();
    return header + kept->bytes + patched(tag.last(kBlockSize), *kept);
}

} // namespace ApeFilter
