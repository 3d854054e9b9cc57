#include "tags/keeping/KeepingChunks.h"

#include "tags/keeping/Id3v2Editor.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

namespace KeepingChunks {

void addEditedID3(RewritePlan& plan, const ChunkForm& form, const FileChunk& chunk, const RewriteSource& source,
                  const KeepEdits& edits, News news)
{
    const QByteArray newTag = news == News::Add ? Id3v2Editor::newTag(edits, source.path()) : QByteArray();
    if (chunk.bodySize == 0 && newTag.isEmpty()) {
        plan.keep(chunk.offset, chunk.size());
        return;
    }
    if (chunk.bodySize == 0) {
        ChunkTagWriter::addID3(plan, form, chunk.id, newTag);
        return;
    }
    const ByteRange body = source.range(chunk.bodyOffset(), chunk.bodySize);
    const Id3v2Editor::Edited edited = Id3v2Editor::edited(body, edits, news, source.path());
    if (edited.oldSize == 0)
        throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("ID3"));
    const qint64 size = edited.tags.size() + chunk.bodySize - edited.oldSize;
    if (!ChunkForm::fits(size))
        throw WriteError(WriteError::Case::rewriteFailed, form.extension());
    plan.add(chunk.id + form.sizeBytes(size) + edited.tags);
    plan.keep(chunk.bodyOffset() + edited.oldSize, chunk.bodySize - edited.oldSize);
    plan.add(QByteArray(size % 2, '\0'));
}

} // namespace KeepingChunks
