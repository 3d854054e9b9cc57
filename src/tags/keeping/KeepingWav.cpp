#include "tags/bytes/FieldLimits.h"
#include "tags/keeping/Id3v2Editor.h"
#include "tags/keeping/KeepingChunks.h"
#include "tags/keeping/KeepingPlanners.h"
#include "tags/keeping/TagEntry.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/LostSound.h"
#include "tags/writing/RiffInfoWriter.h"

namespace KeepingPlanners {

namespace {

constexpr qsizetype kKindSize = 4; // "INFO"

const ChunkForm& form()
{
    return ChunkForm::riff();
}

/// The chunks and those among them that the reader takes: the last list and the first ID3v2 chunk.
struct Layout {
    std::vector<FileChunk> chunks;
    qint64 end = 0; ///< behind the last chunk
    qint64 infoOffset = -1;
    qint64 id3Offset = -1;
};

Layout layoutOf(const RewriteSource& source)
{
    Layout layout;
    LostSound lostSound;
    FileChunkWalker walker(form(), source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        lostSound.rejectAt(*chunk, source);
        if (RiffInfoWriter::isInfo(*chunk, source))
            layout.infoOffset = chunk->offset;
        else if (ChunkTagWriter::isID3(*chunk) && layout.id3Offset < 0)
            layout.id3Offset = chunk->offset;
        layout.chunks.push_back(*chunk);
    }
    layout.end = walker.position();
    return layout;
}

void addEditedInfo(RewritePlan& plan, const FileChunk& list, const RewriteSource& source, const KeepEdits& edits,
                   const QByteArray& added)
{
    const RiffInfoWriter::IsDropped isDropped = [&](const FileChunk& chunk) {
        const qint64 size = chunk.bodySize <= FieldLimits::kTextBytes ? chunk.bodySize : 0;
        const QByteArray text = source.read(chunk.bodyOffset(), size);
        return TagEntries::ofInfoChunk(form().chunk(chunk.id, text)).isField(edits.fields);
    };
    RiffInfoWriter::addFiltered(plan, list, source, isDropped, added);
}

} // namespace

RewritePlan planWav(const RewriteSource& source, const KeepEdits& edits)
{
    RewritePlan plan = ChunkTagWriter::begin(form(), source);
    const Layout layout = layoutOf(source);
    const AudioTags tags = edits.newTags();
    const QByteArray list = RiffInfoWriter::list(tags);
    for (const FileChunk& chunk : layout.chunks) {
        if (RiffInfoWriter::isInfo(chunk, source))
            addEditedInfo(plan, chunk, source, edits, chunk.offset == layout.infoOffset ? list.mid(kKindSize) : "");
        else if (ChunkTagWriter::isID3(chunk))
            KeepingChunks::addEditedID3(plan, form(), chunk, source, edits,
                                        chunk.offset == layout.id3Offset ? News::Add : News::Leave);
        else
            ChunkTagWriter::keep(plan, form(), chunk);
    }
    const bool addsList = layout.infoOffset < 0 && !list.isEmpty();
    const bool addsID3 = layout.id3Offset < 0 && (edits.artwork || !tags.albumArtist.isEmpty());
    if (addsList)
        ChunkTagWriter::addChunk(plan, form(), "LIST", list);
    if (addsID3)
        ChunkTagWriter::addID3(plan, form(), "id3 ", Id3v2Editor::newTag(edits, source.path()));
    if (!addsList && !addsID3)
        plan.keep(layout.end, source.size() - layout.end);
    form().setFileSize(plan);
    return plan;
}

} // namespace KeepingPlanners
