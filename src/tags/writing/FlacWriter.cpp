#include "tags/writing/FlacWriter.h"

#include "core/model/AudioTags.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/FlacBlocks.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/VorbisCommentWriter.h"
#include "tags/writing/WriteErrors.h"

namespace FlacWriter {

namespace {

/// The blocks of the new file. Which of them is the last one shows only at the end.
class NewBlocks {
public:
    NewBlocks() { m_plan.add("fLaC"); }

    void keep(const FlacBlock& block)
    {
        begin(block.type);
        m_plan.keep(block.offset, block.size());
    }
    void add(quint8 type, const QByteArray& body)
    {
        if (body.size() > ByteOrder::kMaximum24)
            throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("flac"));
        begin(type);
        m_plan.add(ByteOrder::big32(quint32(type) << 24 | static_cast<quint32>(body.size())) + body);
    }
    RewritePlan finish(const RewriteSource& source, qint64 soundOffset)
    {
        if (!m_lastOffset) // a new file of sound without any block would be none
            throw FileError(FileError::Case::fileWriteUnknown, source.path());
        mark(*m_lastOffset, m_lastType | FlacBlock::kLastFlag);
        const qint64 soundSize = source.size() - soundOffset;
        m_plan.keep(soundOffset, soundSize);
        m_plan.markSound(soundOffset, soundSize);
        return std::move(m_plan);
    }
    /// The block that was kept last was the old file's last one, and more follow.
    void clearLastFlag()
    {
        if (m_lastOffset)
            mark(*m_lastOffset, m_lastType);
    }

private:
    void begin(quint8 type)
    {
        m_lastOffset = m_plan.size();
        m_lastType = type;
    }
    void mark(qint64 offset, int firstByte) { m_plan.patch(offset, QByteArray(1, static_cast<char>(firstByte))); }

    RewritePlan m_plan;
    std::optional<qint64> m_lastOffset;
    quint8 m_lastType = 0;
};

} // namespace

RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags, const std::optional<QByteArray>& artwork)
{
    NewBlocks blocks;
    FlacBlockWalker walker(source);
    while (const std::optional<FlacBlock> block = walker.next()) {
        if (block->type != FlacBlock::VorbisComment && block->type != FlacBlock::Picture)
            blocks.keep(*block);
    }
    blocks.clearLastFlag();
    if (const QByteArray comments = VorbisCommentWriter::comments(tags); !comments.isEmpty())
        blocks.add(FlacBlock::VorbisComment, comments);
    if (artwork)
        blocks.add(FlacBlock::Picture, VorbisCommentWriter::picture(*artwork));
    return blocks.finish(source, walker.position());
}

RewritePlan planClean(const RewriteSource& source, const TagEdits& edits)
{
    NewBlocks blocks;
    FlacBlockWalker walker(source);
    bool hasComments = false;
    while (const std::optional<FlacBlock> block = walker.next()) {
        if (block->type == FlacBlock::VorbisComment) {
            const TagEdits own = hasComments ? edits.withoutTexts() : edits;
            const auto comments = VorbisCommentWriter::filtered(source.read(block->bodyOffset(), block->bodySize), own);
            if (!comments)
                source.failCorrupt();
            blocks.add(block->type, *comments);
            hasComments = true;
        } else if (block->type != FlacBlock::Picture || !edits.fields.testFlag(CleanerField::Artwork)) {
            blocks.keep(*block);
        }
    }
    blocks.clearLastFlag();
    if (!hasComments && edits.addsText())
        blocks.add(FlacBlock::VorbisComment, VorbisCommentWriter::added(edits));
    return blocks.finish(source, walker.position());
}

bool containsArtwork(const RewriteSource& source, const QByteArray& artwork)
{
    FlacBlockWalker walker(source);
    while (const std::optional<FlacBlock> block = walker.next()) {
        if (block->type == FlacBlock::Picture && source.contains(artwork, block->bodyOffset(), block->bodySize))
            return true;
    }
    return false;
}

} // namespace FlacWriter
