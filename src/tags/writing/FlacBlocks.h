#pragma once

#include <QtGlobal>

#include <optional>

class RewriteSource;

/// A metadata block of a FLAC file. Source: RFC 9639, section 8.1.
struct FlacBlock {
    static constexpr qint64 kHeaderSize = 4;
    /// In the first byte of the header of the last block.
    static constexpr quint8 kLastFlag = 0x80;
    /// Kinds of blocks that hold tags; all others are kept unread.
    enum Type : quint8 { VorbisComment = 4, Picture = 6 };

    quint8 type = 0;
    qint64 offset = 0; ///< of the header
    qint64 bodySize = 0;

    qint64 bodyOffset() const { return offset + kHeaderSize; }
    qint64 size() const { return kHeaderSize + bodySize; }
    qint64 end() const { return offset + size(); }
};

/// The metadata blocks in order, up to the one marked as last. A block that passes the file's end, or a file that ends
/// before the last block, is FileError (fileReadCorruptFile).
class FlacBlockWalker {
public:
    /// WriteError (unsupportedFormat) if the stream's marker is not at the file's begin.
    explicit FlacBlockWalker(const RewriteSource& source);
    /// The next block, its body unread. Nothing behind the last block.
    std::optional<FlacBlock> next();
    /// Behind the last block's end: where the sound begins.
    qint64 position() const { return m_position; }

private:
    const RewriteSource& m_source;
    qint64 m_position;
    bool m_isAtEnd = false;
};
