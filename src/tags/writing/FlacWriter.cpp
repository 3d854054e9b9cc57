#include "tags/writing/FlacWriter.h"

#include "core/model/AudioTags.h"
#include "tags/writing/FlacBlocks.h"
#include "tags/writing/NewFlacBlocks.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/VorbisCommentWriter.h"

namespace FlacWriter {

RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags, const std::optional<QByteArray>& artwork)
{
    NewFlacBlocks blocks;
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
    return blocks.finish(source, walker.position(), source.size());
}

RewritePlan planClean(const RewriteSource& source, const TagEdits& edits)
{
    NewFlacBlocks blocks;
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
    return blocks.finish(source, walker.position(), source.size());
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
