#include "tags/keeping/Id3v2Editor.h"
#include "tags/keeping/KeepingChunks.h"
#include "tags/keeping/KeepingPlanners.h"
#include "tags/keeping/TagEntry.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/RewriteSource.h"

namespace KeepingPlanners {

RewritePlan planAiff(const RewriteSource& source, const KeepEdits& edits)
{
    const ChunkForm& form = ChunkForm::aiff();
    RewritePlan plan = ChunkTagWriter::begin(form, source);
    bool hasID3 = false;
    FileChunkWalker walker(form, source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        if (ChunkTagWriter::isID3(*chunk)) {
            // The reader takes the first, even an empty one.
            KeepingChunks::addEditedID3(plan, form, *chunk, source, edits, hasID3 ? News::Leave : News::Add);
            hasID3 = true;
        } else if (!TagEntries::ofAiffChunk(chunk->id).isField(edits.fields)) {
            ChunkTagWriter::keep(plan, form, *chunk);
        }
    }
    const QByteArray tag = hasID3 ? QByteArray() : Id3v2Editor::newTag(edits, source.path());
    if (!tag.isEmpty())
        ChunkTagWriter::addID3(plan, form, "ID3 ", tag);
    else
        plan.keep(walker.position(), source.size() - walker.position());
    form.setFileSize(plan);
    return plan;
}

} // namespace KeepingPlanners
