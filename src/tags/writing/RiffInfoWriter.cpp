#include "tags/writing/RiffInfoWriter.h"

#include "core/model/AudioTags.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace RiffInfoWriter {

namespace {

constexpr qint64 kKindSize = 4; // "INFO"

struct Field {
    const char* id;
    QString AudioTags::*value;
};
constexpr Field kFields[] = {
    {"INAM", &AudioTags::title},   {"IART", &AudioTags::artist}, {"IPRD", &AudioTags::album},
    {"IGNR", &AudioTags::genre},   {"ICRD", &AudioTags::year},   {"ITRK", &AudioTags::track},
    {"ICMT", &AudioTags::comment}, {"IBPM", &AudioTags::bpm},    {"IKEY", &AudioTags::musicalKey},
};

struct CleanedID {
    CleanerField field;
    const char* id;
};
/// Ids by field. Chosen: those that this program writes, and IPRT, which others use for the track number. IPRD is the
/// album here, whatever "product" meant once. Artwork and album artist have none.
constexpr CleanedID kCleanedIDs[] = {
    {CleanerField::Comment, "ICMT"}, {CleanerField::Genre, "IGNR"}, {CleanerField::Album, "IPRD"},
    {CleanerField::Year, "ICRD"},    {CleanerField::Track, "ITRK"}, {CleanerField::Track, "IPRT"},
    {CleanerField::Tempo, "IBPM"},   {CleanerField::Key, "IKEY"},   {CleanerField::Title, "INAM"},
};

bool isChosen(const QByteArray& id, CleanerFields fields)
{
    return std::ranges::any_of(
        kCleanedIDs, [&](const CleanedID& cleaned) { return fields.testFlag(cleaned.field) && id == cleaned.id; });
}

QByteArray texts(const TagEdits& edits)
{
    QByteArray chunks;
    if (const auto title = edits.newTitle())
        chunks += ChunkForm::riff().chunk("INAM", title->toUtf8());
    if (const auto album = edits.newAlbum())
        chunks += ChunkForm::riff().chunk("IPRD", album->toUtf8());
    return chunks;
}

/// The sub-chunks that stay.
RewritePlan kept(const FileChunk& list, const RewriteSource& source, const IsDropped& isDropped, bool isAddedTo)
{
    RewritePlan plan;
    const qint64 end = list.bodyOffset() + list.bodySize;
    FileChunkWalker walker(ChunkForm::riff(), source, list.bodyOffset() + kKindSize, end,
                           FileChunkWalker::LastPadding::Optional);
    while (const std::optional<FileChunk> chunk = walker.next()) {
        if (!isDropped(*chunk))
            plan.keep(chunk->offset, chunk->size());
    }
    if (!isAddedTo) // else it would stand between the chunks
        plan.keep(walker.position(), end - walker.position());
    return plan;
}

} // namespace

QByteArray list(const AudioTags& tags)
{
    QByteArray body("INFO");
    for (const Field& field : kFields) {
        if (const QString& value = tags.*field.value; !value.isEmpty())
            body += ChunkForm::riff().chunk(field.id, value.toUtf8());
    }
    return body.size() > kKindSize ? body : QByteArray();
}

bool isInfo(const FileChunk& chunk, const RewriteSource& source)
{
    return chunk.id == "LIST" && chunk.bodySize >= kKindSize && source.read(chunk.bodyOffset(), kKindSize) == "INFO";
}

void addFiltered(RewritePlan& plan, const FileChunk& list, const RewriteSource& source, const TagEdits& edits)
{
    const IsDropped isDropped = [&](const FileChunk& chunk) { return isChosen(chunk.id, edits.fields); };
    addFiltered(plan, list, source, isDropped, texts(edits));
}

void addFiltered(RewritePlan& plan, const FileChunk& list, const RewriteSource& source, const IsDropped& isDropped,
                 const QByteArray& added)
{
    RewritePlan body = kept(list, source, isDropped, !added.isEmpty());
    if (!added.isEmpty()) {
        body.add(QByteArray(body.size() % 2, '\0')); // a padding that was left out
        body.add(added);
    }
    const qint64 size = kKindSize + body.size();
    if (!ChunkForm::fits(size))
        throw WriteError(WriteError::Case::rewriteFailed, ChunkForm::riff().extension());
    plan.add("LIST" + ChunkForm::riff().sizeBytes(size) + "INFO");
    plan.append(body);
    plan.add(QByteArray(size % 2, '\0'));
}

QByteArray added(const TagEdits& edits)
{
    return "INFO" + texts(edits);
}

} // namespace RiffInfoWriter
