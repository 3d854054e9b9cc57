#include "tags/writing/AiffWriter.h"

#include "core/model/AudioTags.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/RewriteSource.h"

#include <algorithm>

namespace AiffWriter {

namespace {

const ChunkForm& form()
{
    return ChunkForm::aiff();
}

bool isChosen(const FileChunk& chunk, CleanerFields fields)
{
    return (chunk.id == "NAME" && fields.testFlag(CleanerField::Title)) ||
           ((chunk.id == "ANNO" || chunk.id == "COMT") && fields.testFlag(CleanerField::Comment));
}

} // namespace

bool isText(const FileChunk& chunk)
{
    static constexpr const char* kTexts[] = {"NAME", "AUTH", "ANNO", "COMT"};
    return std::ranges::any_of(kTexts, [&](const char* id) { return chunk.id == id; });
}

RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags, const std::optional<QByteArray>& artwork)
{
    RewritePlan plan = ChunkTagWriter::begin(form(), source);
    FileChunkWalker walker(form(), source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        if (!isText(*chunk) && !ChunkTagWriter::isID3(*chunk))
            ChunkTagWriter::keep(plan, form(), *chunk);
    }
    if (const QByteArray tag = Id3v2Builder::tag(tags, artwork); !tag.isEmpty())
        ChunkTagWriter::addID3(plan, form(), "ID3 ", tag);
    form().setFileSize(plan);
    return plan;
}

RewritePlan planClean(const RewriteSource& source, const TagEdits& edits)
{
    RewritePlan plan = ChunkTagWriter::begin(form(), source);
    bool hasID3 = false;
    FileChunkWalker walker(form(), source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        if (ChunkTagWriter::isID3(*chunk)) {
            const TagEdits own = hasID3 ? edits.withoutTexts() : edits;
            ChunkTagWriter::addFilteredID3(plan, form(), *chunk, source, own);
            hasID3 = hasID3 || chunk->bodySize > 0; // an empty one can take no title
        } else if (!isChosen(*chunk, edits.fields)) {
            ChunkTagWriter::keep(plan, form(), *chunk);
        }
    }
    if (!hasID3 && edits.addsText()) {
        AudioTags texts;
        texts.title = edits.newTitle().value_or(QString());
        texts.album = edits.newAlbum().value_or(QString());
        ChunkTagWriter::addChunk(plan, form(), "ID3 ", Id3v2Builder::tag(texts, std::nullopt));
    } else {
        plan.keep(walker.position(), source.size() - walker.position());
    }
    form().setFileSize(plan);
    return plan;
}

} // namespace AiffWriter
