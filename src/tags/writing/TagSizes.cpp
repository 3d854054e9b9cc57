#include "tags/writing/TagSizes.h"

#include "tags/bytes/ByteReader.h"

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

} // namespace TagSizes
