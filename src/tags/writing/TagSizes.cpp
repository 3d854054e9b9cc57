#include "tags/writing/TagSizes.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace TagSizes {

bool isId3Header(QByteArrayView bytes)
{
    return bytes.size() >= kId3HeaderSize && bytes.startsWith("ID3");
}

quint32 folded(QByteArrayView bytes)
{
    return ByteReader(bytes).syncsafe();
}

std::optional<quint32> syncsafe(QByteArrayView bytes)
{
    if (bytes.size() < 4)
        return std::nullopt;
    const QByteArrayView four = bytes.first(4);
    if (std::ranges::any_of(four, [](char byte) { return (byte & 0x80) != 0; }))
        return std::nullopt;
    return folded(four);
}

qint64 behindId3Tags(const std::function<QByteArray(qint64 offset, qint64 count)>& read, qint64 fileSize,
                     const QString& path)
{
    constexpr quint8 kHasFooter = 0x10; // Source: ID3v2.4.0, section 3.1: as large as the header
    qint64 start = 0;
    while (fileSize - start >= kId3HeaderSize) {
        const QByteArray header = read(start, kId3HeaderSize);
        if (!isId3Header(header))
            break;
        const bool hasFooter = static_cast<quint8>(header.at(5)) & kHasFooter;
        const qint64 size = kId3HeaderSize * (hasFooter ? 2 : 1) + folded(header.sliced(6));
        if (size > fileSize - start)
            throw FileError(FileError::Case::fileReadCorruptFile, path);
        start += size;
    }
    return start;
}

} // namespace TagSizes
