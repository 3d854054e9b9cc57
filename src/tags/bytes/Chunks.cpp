#include "tags/bytes/Chunks.h"

#include "tags/bytes/ByteReader.h"

#include <algorithm>

namespace {

constexpr qint64 kHeaderSize = 8;

bool isChunkID(QByteArrayView id)
{
    // "©" stands in chunks of old AIFF writers.
    return std::ranges::all_of(id, [](char c) { return static_cast<uchar>(c) >= 0x20 && c != 0x7f; });
}

} // namespace

std::optional<Chunk> ChunkWalker::next()
{
    const QByteArray header = m_chunks.read(m_position, kHeaderSize);
    if (header.size() < kHeaderSize || !isChunkID(QByteArrayView(header).first(4)))
        return std::nullopt;
    const quint32 size = statedSize(header);
    m_bodyOffset = m_position + kHeaderSize;
    continueAfter(size);
    return Chunk{header.first(4), m_chunks.part(m_bodyOffset, size), size};
}

void ChunkWalker::continueAfter(qint64 bodySize)
{
    const qint64 room = std::max<qint64>(0, m_chunks.size() - m_bodyOffset);
    const qint64 bodyEnd = m_bodyOffset + std::clamp<qint64>(bodySize, 0, room);
    m_position = bodyEnd + (bodySize % 2 == 1 && isPadded(bodyEnd) ? 1 : 0);
}

/// Odd bodies are padded, mostly with a zero, but some writers leave it out and go on with the next id at once.
bool ChunkWalker::isPadded(qint64 bodyEnd) const
{
    const QByteArray next = m_chunks.read(bodyEnd, kHeaderSize + 1);
    if (next.size() < kHeaderSize || !isChunkID(QByteArrayView(next).first(1)))
        return true;
    // No pad byte makes up the first letter of a name that is complete without it.
    const QByteArrayView unpadded = QByteArrayView(next).first(4);
    static constexpr const char* kUsual[] = {"fmt ", "data", "LIST", "id3 ", "ID3 ", "fact", "COMM", "SSND"};
    if (std::ranges::any_of(kUsual, [&](const char* id) { return unpadded == QByteArrayView(id); }))
        return false;
    if (fits(bodyEnd + 1))
        return true;
    return !fits(bodyEnd) && (!isChunkID(unpadded) || isChunkID(QByteArrayView(next).sliced(1, 4)));
}

/// Whether what stands there can be a chunk that ends within the file.
bool ChunkWalker::fits(qint64 position) const
{
    const QByteArray header = m_chunks.read(position, kHeaderSize);
    return header.size() == kHeaderSize && isChunkID(QByteArrayView(header).first(4)) &&
           position + kHeaderSize + statedSize(header) <= m_chunks.size();
}

quint32 ChunkWalker::statedSize(QByteArrayView header) const
{
    ByteReader reader(header.sliced(4));
    return m_endian == Endian::Little ? reader.u32le() : reader.u32be();
}
