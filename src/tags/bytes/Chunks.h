#pragma once

#include "tags/bytes/ByteSource.h"

#include <optional>

/// One chunk of a RIFF or AIFF file.
struct Chunk {
    QByteArray id;  ///< four bytes
    ByteRange body; ///< ends where the file ends if the size claims more
    quint32 statedSize = 0;
};

/// The chunks of a file, or of a list within one, in order.
class ChunkWalker {
public:
    /// Order of the bytes of sizes: little in RIFF, big in AIFF.
    enum class Endian { Little, Big };
    /// \param chunks what follows the file's or the list's own header
    ChunkWalker(const ByteRange& chunks, Endian endian)
        : m_chunks(chunks)
        , m_endian(endian)
    {
    }

    /// The next chunk, whether or not the one before was padded to an even size. Nothing at the end, and where no id
    /// of printable letters stands.
    std::optional<Chunk> next();
    /// Goes on behind a body that is longer than the 32 bits of the last chunk's size could say.
    void continueAfter(qint64 bodySize);

private:
    bool isPadded(qint64 bodyEnd) const;
    bool fits(qint64 position) const;
    quint32 statedSize(QByteArrayView header) const;

    const ByteRange m_chunks;
    const Endian m_endian;
    qint64 m_position = 0;
    qint64 m_bodyOffset = 0;
};
