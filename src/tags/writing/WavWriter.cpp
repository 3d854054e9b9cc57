#include "tags/writing/WavWriter.h"

#include "core/model/AudioTags.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/LostSound.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/RiffInfoWriter.h"

namespace WavWriter {

namespace {

const ChunkForm& form()
{
    return ChunkForm::riff();
}

} // namespace

RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags, const std::optional<QByteArray>& artwork)
{
    RewritePlan plan = ChunkTagWriter::begin(form(), source);
    LostSound lostSound;
    FileChunkWalker walker(form(), source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        lostSound.rejectAt(*chunk, source);
        if (!ChunkTagWriter::isID3(*chunk) && !RiffInfoWriter::isInfo(*chunk, source))
            ChunkTagWriter::keep(plan, form(), *chunk);
    }
    if (const QByteArray list = RiffInfoWriter::list(tags); !list.isEmpty())
        ChunkTagWriter::addChunk(plan, form(), "LIST", list);
    if (artwork)
        ChunkTagWriter::addID3(plan, form(), "id3 ", Id3v2Builder::tag(tags, artwork));
    form().setFileSize(plan);
    return plan;
}

RewritePlan planClean(const RewriteSource& source, const TagEdits& edits)
{
    RewritePlan plan = ChunkTagWriter::begin(form(), source);
    bool hasInfo = false;
    bool hasID3 = false;
    LostSound lostSound;
    FileChunkWalker walker(form(), source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        lostSound.rejectAt(*chunk, source);
        if (RiffInfoWriter::isInfo(*chunk, source)) {
            RiffInfoWriter::addFiltered(plan, *chunk, source, hasInfo ? edits.withoutTexts() : edits);
            hasInfo = true;
        } else if (ChunkTagWriter::isID3(*chunk)) {
            const TagEdits own = hasID3 ? edits.withoutTexts() : edits;
            ChunkTagWriter::addFilteredID3(plan, form(), *chunk, source, own);
            hasID3 = hasID3 || chunk->bodySize > 0; // an empty one can take no title
        } else {
            ChunkTagWriter::keep(plan, form(), *chunk);
        }
    }
    if (!hasInfo && edits.addsText())
        ChunkTagWriter::addChunk(plan, form(), "LIST", RiffInfoWriter::added(edits));
    else
        plan.keep(walker.position(), source.size() - walker.position());
    form().setFileSize(plan);
    return plan;
}

} // namespace WavWriter
