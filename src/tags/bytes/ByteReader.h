#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <optional>

/// Walks through bytes with every length checked against what remains. A read that fails turns all later reads into
/// failures that give 0 or nothing, so that a parser may read on and ask hasFailed() once. The bytes live longer than
/// the reader and the views that it gives. Never throws.
class ByteReader {
public:
    explicit ByteReader(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }

    /// Whether a read asked for more than there was.
    bool hasFailed() const { return m_hasFailed; }
    /// Whether nothing can be read any more; true also after a failure, so a loop of reads ends.
    bool isAtEnd() const { return m_hasFailed || m_position == m_bytes.size(); }
    /// Bytes that can still be read; 0 after a failure.
    qsizetype remaining() const { return m_hasFailed ? 0 : m_bytes.size() - m_position; }
    /// Offset of the next read.
    qsizetype position() const { return m_position; }

    /// The next bytes, as a view into the source. Fails as a whole where fewer remain or \p count is negative.
    QByteArrayView bytes(qint64 count)
    {
        if (count < 0 || count > remaining()) {
            m_hasFailed = true;
            return {};
        }
        const QByteArrayView taken = m_bytes.sliced(m_position, count);
        m_position += static_cast<qsizetype>(count);
        return taken;
    }
    /// All that remains; empty after a failure.
    QByteArrayView rest() { return bytes(remaining()); }
    /// Leaves bytes out; fails like bytes().
    void skip(qint64 count) { bytes(count); }

    // Whole numbers, unsigned; "be" the highest byte first, "le" the lowest.
    quint8 u8() { return big<quint8>(); }
    quint16 u16be() { return big<quint16>(); }
    quint32 u32be() { return big<quint32>(); }
    quint64 u64be() { return big<quint64>(); }
    quint32 u24be()
    {
        const quint32 high = u8();
        return high << 16 | u16be();
    }
    quint16 u16le() { return little<quint16>(); }
    quint32 u32le() { return little<quint32>(); }
    quint64 u64le() { return little<quint64>(); }
    /// Four bytes of seven bits each, big-endian; high bits are ignored.
    quint32 syncsafe()
    {
        quint32 value = 0;
        for (const char byte : bytes(4))
            value = value << 7 | (static_cast<quint8>(byte) & 0x7f);
        return value;
    }

private:
    template <typename T>
    T big()
    {
        const QByteArrayView taken = bytes(sizeof(T));
        return taken.isEmpty() ? T(0) : qFromBigEndian<T>(taken.data());
    }
    template <typename T>
    T little()
    {
        const QByteArrayView taken = bytes(sizeof(T));
        return taken.isEmpty() ? T(0) : qFromLittleEndian<T>(taken.data());
    }

    QByteArrayView m_bytes;
    qsizetype m_position = 0;
    bool m_hasFailed = false;
};
