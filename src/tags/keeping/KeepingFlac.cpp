#include "tags/bytes/ByteReader.h"
#include "tags/keeping/KeepingPlanners.h"
#include "tags/keeping/TagEntry.h"
#include "tags/keeping/TrailingTags.h"
#include "tags/writing/NewFlacBlocks.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/VorbisCommentWriter.h"

namespace KeepingPlanners {

namespace {

/// \param block the body of a picture block.
bool isReplacedPicture(QByteArrayView block, const KeepEdits& edits)
{
    ByteReader reader(block);
    const quint32 type = reader.u32be();
    return !reader.hasFailed() && edits.replacesPicture(type);
}

bool isReplacedPictureComment(QByteArrayView comment, const KeepEdits& edits)
{
    const QByteArray bytes = comment.toByteArray();
    const qsizetype valueOffset = bytes.indexOf('=') + 1;
    if (bytes.left(valueOffset).toUpper() != "METADATA_BLOCK_PICTURE=")
        return edits.artwork.has_value(); // a picture without a kind
    return isReplacedPicture(QByteArray::fromBase64(bytes.mid(valueOffset)), edits);
}

bool goes(QByteArrayView comment, const KeepEdits& edits)
{
    const TagEntry entry = TagEntries::ofComment(comment);
    return entry.kind == TagEntry::Kind::Picture ? isReplacedPictureComment(comment, edits)
                                                 : entry.isField(edits.fields);
}

void addComments(NewFlacBlocks& blocks, const QByteArray& block, const KeepEdits& edits, News news,
                 const RewriteSource& source)
{
    const VorbisCommentWriter::IsDropped isDropped = [&](QByteArrayView comment) { return goes(comment, edits); };
    const QByteArrayList added = news == News::Add ? VorbisCommentWriter::texts(edits.newTags()) : QByteArrayList();
    const std::optional<QByteArray> comments = VorbisCommentWriter::filtered(block, isDropped, added);
    if (!comments)
        source.failCorrupt();
    blocks.add(FlacBlock::VorbisComment, *comments);
}

} // namespace

RewritePlan planFlac(const RewriteSource& source, const KeepEdits& edits)
{
    NewFlacBlocks blocks;
    FlacBlockWalker walker(source);
    bool hasComments = false;
    while (const std::optional<FlacBlock> block = walker.next()) {
        if (block->type == FlacBlock::VorbisComment) {
            const QByteArray body = source.read(block->bodyOffset(), block->bodySize);
            addComments(blocks, body, edits, hasComments ? News::Leave : News::Add, source);
            hasComments = true;
            continue;
        }
        const bool isPicture = block->type == FlacBlock::Picture;
        const qint64 typeSize = std::min<qint64>(4, block->bodySize);
        if (!isPicture || !isReplacedPicture(source.read(block->bodyOffset(), typeSize), edits))
            blocks.keep(*block);
    }
    blocks.clearLastFlag();
    const QByteArray newComments = VorbisCommentWriter::comments(edits.newTags());
    if (!hasComments && !newComments.isEmpty())
        blocks.add(FlacBlock::VorbisComment, newComments);
    if (edits.artwork)
        blocks.add(FlacBlock::Picture, VorbisCommentWriter::picture(*edits.artwork));
    const TrailingTags trailing(source, walker.position());
    RewritePlan plan = blocks.finish(source, walker.position(), trailing.begin());
    trailing.addEdited(plan, edits);
    return plan;
}

} // namespace KeepingPlanners
