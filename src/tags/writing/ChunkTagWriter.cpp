#include "tags/writing/ChunkTagWriter.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/Id3v2Filter.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace ChunkTagWriter {

namespace {

constexpr qint64 kTagHeaderSize = 10;

/// How much of the chunk is the tag: some writers leave room behind it.
qint64 tagSize(const FileChunk& chunk, const RewriteSource& source)
{
    const QByteArray header = source.read(chunk.bodyOffset(), std::min(kTagHeaderSize, chunk.bodySize));
    ByteReader reader(header);
    reader.skip(6); // "ID3", version, flags
    const qint64 size = kTagHeaderSize + reader.syncsafe();
    return reader.hasFailed() ? chunk.bodySize : std::min(size, chunk.bodySize);
}

} // namespace

RewritePlan begin(const ChunkForm& form, const RewriteSource& source)
{
    form.requireHeader(source);
    RewritePlan plan;
    plan.keep(0, ChunkForm::kFileHeaderSize);
    return plan;
}

void keep(RewritePlan& plan, const ChunkForm& form, const FileChunk& chunk)
{
    plan.keep(chunk.offset, ChunkForm::kHeaderSize + chunk.bodySize);
    if (chunk.id == form.soundID())
        plan.markSound(chunk.bodyOffset(), chunk.bodySize);
    plan.keep(chunk.bodyOffset() + chunk.bodySize, chunk.bodySize % 2);
}

bool isID3(const FileChunk& chunk)
{
    return chunk.id == "ID3 " || chunk.id == "id3 ";
}

void addChunk(RewritePlan& plan, const ChunkForm& form, QByteArrayView id, const QByteArray& body)
{
    if (!ChunkForm::fits(body.size()))
        throw WriteError(WriteError::Case::rewriteFailed, form.extension());
    plan.add(form.chunk(id, body));
}

void addID3(RewritePlan& plan, const ChunkForm& form, QByteArrayView id, const QByteArray& tag)
{
    if (!Id3v2Builder::fits(tag))
        throw WriteError(WriteError::Case::rewriteFailed, form.extension());
    addChunk(plan, form, id, tag);
}

void addFilteredID3(RewritePlan& plan, const ChunkForm& form, const FileChunk& chunk, const RewriteSource& source,
                    const TagEdits& edits)
{
    if (chunk.bodySize == 0) {
        plan.keep(chunk.offset, chunk.size());
        return;
    }
    const qint64 oldSize = tagSize(chunk, source);
    const QByteArray tag = Id3v2Filter::filtered(source.read(chunk.bodyOffset(), oldSize), edits.fields,
                                                 edits.newTitle(), edits.newAlbum(), source.path());
    const qint64 size = tag.size() + chunk.bodySize - oldSize;
    if (!ChunkForm::fits(size))
        throw WriteError(WriteError::Case::rewriteFailed, form.extension());
    plan.add(chunk.id + form.sizeBytes(size) + tag);
    plan.keep(chunk.bodyOffset() + oldSize, chunk.bodySize - oldSize);
    plan.add(QByteArray(size % 2, '\0'));
}

bool containsArtwork(const ChunkForm& form, const RewriteSource& source, const QByteArray& artwork)
{
    form.requireHeader(source);
    FileChunkWalker walker(form, source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        if (isID3(*chunk) && source.contains(artwork, chunk->bodyOffset(), chunk->bodySize))
            return true;
    }
    return false;
}

} // namespace ChunkTagWriter
