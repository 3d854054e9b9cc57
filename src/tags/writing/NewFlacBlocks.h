#pragma once

#include "tags/writing/FlacBlocks.h"
#include "tags/writing/RewritePlan.h"

/// The metadata blocks of a new FLAC file, and its sound. Which block is the last one shows only at the end.
class NewFlacBlocks {
public:
    /// Begins with the stream's marker.
    NewFlacBlocks();

    /// Goes on with a block of the old file as it stands there.
    void keep(const FlacBlock& block);
    /// WriteError (rewriteFailed) for a body beyond 24 bits.
    /// Goes on with a new block.
    void add(quint8 type, const QByteArray& body);
    /// The block that was kept last was the old file's last one, and more may follow.
    void clearLastFlag();
    /// The file up to the end of the sound, a stretch of the old file. FileError (fileWriteUnknown) without any block.
    RewritePlan finish(const RewriteSource& source, qint64 soundOffset, qint64 soundEnd);

private:
    void begin(quint8 type);
    void mark(qint64 offset, int firstByte);

    RewritePlan m_plan;
    std::optional<qint64> m_lastOffset;
    quint8 m_lastType = 0;
};
