#pragma once

#include <QByteArray>
#include <QtEndian>

/// Numbers as the bytes that stand in a file.
namespace ByteOrder {

/// Four bytes, the highest first.
inline QByteArray big32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

/// Four bytes, the lowest first.
inline QByteArray little32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

/// Three bytes, the highest first; \p value below 2^24.
inline QByteArray big24(quint32 value)
{
    return big32(value).sliced(1);
}

/// Seven bits in each of four bytes, big-endian; \p value below 2^28.
inline QByteArray syncsafe(quint32 value)
{
    return big32((value & 0x7f) | (value & 0x3f80) << 1 | (value & 0x1fc000) << 2 | (value & 0xfe00000) << 3);
}

/// Most of a size field of 32 bits.
inline constexpr qint64 kMaximum32 = 0xFFFFFFFF;
/// Most of a size field of 24 bits.
inline constexpr qint64 kMaximum24 = 0xFFFFFF;

} // namespace ByteOrder
