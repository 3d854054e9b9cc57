#include "tags/writing/ContainerWriters.h"

#include "tags/writing/AiffWriter.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/FlacWriter.h"
#include "tags/writing/M4aWriter.h"
#include "tags/writing/PlannedRewrite.h"
#include "tags/writing/WavWriter.h"

namespace ContainerWriters {

namespace {

bool containsInChunk(const ChunkForm& form, const QByteArray& artwork, const QString& path)
{
    return PlannedRewrite::look(
        path, [&](const RewriteSource& source) { return ChunkTagWriter::containsArtwork(form, source, artwork); });
}

} // namespace

void writeFLAC(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path)
{
    PlannedRewrite::rewrite(path, QStringLiteral("flac"),
                            [&](const RewriteSource& source) { return FlacWriter::planWrite(source, tags, artwork); });
}

void writeWAV(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path)
{
    PlannedRewrite::rewrite(path, QStringLiteral("wav"),
                            [&](const RewriteSource& source) { return WavWriter::planWrite(source, tags, artwork); });
}

void writeAIFF(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path)
{
    PlannedRewrite::rewrite(path, QStringLiteral("aiff"),
                            [&](const RewriteSource& source) { return AiffWriter::planWrite(source, tags, artwork); });
}

void writeM4A(const AudioTags& tags, const QString& path)
{
    PlannedRewrite::rewrite(path, QStringLiteral("m4a"),
                            [&](const RewriteSource& source) { return M4aWriter::planWrite(source, tags); });
}

void cleanFLAC(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
               const QString& path)
{
    const TagEdits edits{fields, title, album};
    PlannedRewrite::rewrite(path, QStringLiteral("flac"),
                            [&](const RewriteSource& source) { return FlacWriter::planClean(source, edits); });
}

void cleanWAV(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
              const QString& path)
{
    const TagEdits edits{fields, title, album};
    PlannedRewrite::rewrite(path, QStringLiteral("wav"),
                            [&](const RewriteSource& source) { return WavWriter::planClean(source, edits); });
}

void cleanAIFF(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
               const QString& path)
{
    const TagEdits edits{fields, title, album};
    PlannedRewrite::rewrite(path, QStringLiteral("aiff"),
                            [&](const RewriteSource& source) { return AiffWriter::planClean(source, edits); });
}

void cleanM4A(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
              const QString& path)
{
    const TagEdits edits{fields, title, album};
    PlannedRewrite::rewrite(path, QStringLiteral("m4a"),
                            [&](const RewriteSource& source) { return M4aWriter::planClean(source, edits); });
}

bool containsInFLAC(const QByteArray& artwork, const QString& path)
{
    return PlannedRewrite::look(
        path, [&](const RewriteSource& source) { return FlacWriter::containsArtwork(source, artwork); });
}

bool containsInWAV(const QByteArray& artwork, const QString& path)
{
    return containsInChunk(ChunkForm::riff(), artwork, path);
}

bool containsInAIFF(const QByteArray& artwork, const QString& path)
{
    return containsInChunk(ChunkForm::aiff(), artwork, path);
}

} // namespace ContainerWriters
