#include "tags/vault/PackedBytes.h"

#include "tags/bytes/ByteReader.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <zlib.h>

namespace PackedBytes {

namespace {

// On disk, never change.
constexpr qint64 kBlockSize = 64 * 1024;
constexpr quint32 kIsRaw = 0x80000000;
constexpr qint64 kHeadSize = 4;

/// Whether the letters occur about equally often, as they do in what has been compressed before. Chosen: covers reach
/// 7.9 bits a letter, texts and tables of numbers stay below 6.
bool looksCompressed(QByteArrayView block)
{
    constexpr double kEnoughBits = 7.3;
    constexpr qsizetype kSmall = 4096; // less says nothing, and costs nothing
    if (block.size() < kSmall)
        return false;
    const QByteArrayView sample = block.sliced((block.size() - kSmall) / 2, kSmall);
    std::array<quint32, 256> counts{};
    for (const char byte : sample)
        ++counts[static_cast<quint8>(byte)];
    double bits = 0;
    for (const quint32 count : counts) {
        const double share = double(count) / double(sample.size());
        bits -= count > 0 ? share * std::log2(share) : 0;
    }
    return bits > kEnoughBits;
}

/// Nothing if the block does not get shorter.
QByteArray compressed(QByteArrayView block)
{
    uLongf size = ::compressBound(static_cast<uLong>(block.size()));
    QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
    const int result =
        ::compress2(reinterpret_cast<Bytef*>(bytes.data()), &size, reinterpret_cast<const Bytef*>(block.data()),
                    static_cast<uLong>(block.size()), Z_BEST_SPEED);
    if (result != Z_OK || static_cast<qint64>(size) >= block.size())
        return {};
    bytes.truncate(static_cast<qsizetype>(size));
    return bytes;
}

void appendHead(QByteArray& bytes, quint32 head)
{
    char raw[sizeof(head)];
    qToLittleEndian(head, raw);
    bytes.append(raw, sizeof(head));
}

/// \return whether the block has given exactly so many bytes.
bool inflateInto(QByteArrayView block, char* target, qint64 size)
{
    uLongf filled = static_cast<uLongf>(size);
    const int result = ::uncompress(reinterpret_cast<Bytef*>(target), &filled,
                                    reinterpret_cast<const Bytef*>(block.data()), static_cast<uLong>(block.size()));
    return result == Z_OK && static_cast<qint64>(filled) == size;
}

} // namespace

qint64 largestSize(qint64 size)
{
    return size + kHeadSize * (size / kBlockSize + 1);
}

void pack(QByteArrayView bytes, QByteArray& target)
{
    for (qint64 begin = 0; begin < bytes.size(); begin += kBlockSize) {
        const QByteArrayView block = bytes.sliced(begin, std::min<qint64>(kBlockSize, bytes.size() - begin));
        const QByteArray shorter = looksCompressed(block) ? QByteArray() : compressed(block);
        const QByteArrayView stored = shorter.isEmpty() ? block : QByteArrayView(shorter);
        appendHead(target, static_cast<quint32>(stored.size()) | (shorter.isEmpty() ? kIsRaw : 0));
        target.append(stored.data(), stored.size());
    }
}

std::optional<QByteArray> unpack(QByteArrayView packed, qint64 size)
{
    QByteArray bytes;
    ByteReader reader(packed);
    while (bytes.size() < size) {
        const quint32 head = reader.u32le();
        const QByteArrayView stored = reader.bytes(head & ~kIsRaw);
        if (reader.hasFailed())
            return std::nullopt;
        const qint64 count = std::min<qint64>(kBlockSize, size - bytes.size());
        if (head & kIsRaw) {
            if (stored.size() != count)
                return std::nullopt;
            bytes.append(stored.data(), stored.size());
            continue;
        }
        const qsizetype position = bytes.size();
        bytes.resize(position + count);
        if (!inflateInto(stored, bytes.data() + position, count))
            return std::nullopt;
    }
    return reader.isAtEnd() && !reader.hasFailed() ? std::optional(bytes) : std::nullopt;
}

} // namespace PackedBytes
