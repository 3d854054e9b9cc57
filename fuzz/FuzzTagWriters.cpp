#include "core/model/AudioTags.h"
#include "tags/writing/AiffWriter.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/FlacWriter.h"
#include "tags/writing/M4aWriter.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WavWriter.h"
#include "tags/writing/WriteErrors.h"

#include <cstdlib>
#include <functional>

namespace {

using Planner = std::function<RewritePlan(const RewriteSource&)>;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

template <typename Use>
auto withSource(const QByteArray& bytes, const Use& use)
{
    SourceBytes source(bytes.size(), [&](qint64 offset, qint64 count) { return bytes.mid(offset, count); });
    return use(RewriteSource(source, {}));
}

/// The new file, whose sound has to be the old one's.
QByteArray applied(const Planner& planner, const QByteArray& bytes)
{
    return withSource(bytes, [&](const RewriteSource& source) {
        const RewritePlan plan = planner(source);
        const QByteArray result = plan.toBytes(source);
        require(result.size() == plan.size());
        for (const SoundSpan& span : plan.sound()) {
            require(span.newOffset >= 0 && span.newOffset + span.length <= result.size());
            require(bytes.mid(span.oldOffset, span.length) == result.mid(span.newOffset, span.length));
        }
        return result;
    });
}

/// What has been written once is not refused the second time, and changes no more.
void check(const Planner& planner, const QByteArray& bytes)
{
    QByteArray once;
    try {
        once = applied(planner, bytes);
    } catch (const FileError&) {
        return;
    } catch (const WriteError&) {
        return;
    }
    require(applied(planner, once) == once);
}

AudioTags someTags()
{
    AudioTags tags;
    tags.title = QStringLiteral("Title");
    tags.comment = QStringLiteral("odd");
    tags.albumArtist = QStringLiteral("Various");
    return tags;
}

struct Writer {
    std::function<RewritePlan(const RewriteSource&, const AudioTags&)> write;
    std::function<RewritePlan(const RewriteSource&, const TagEdits&)> clean;
};

/// By the file's begin, so that the seeds are files as they are.
Writer writerOf(const QByteArray& bytes)
{
    const std::optional<QByteArray> artwork("picture");
    if (bytes.startsWith('f'))
        return {[=](const auto& source, const auto& tags) { return FlacWriter::planWrite(source, tags, artwork); },
                &FlacWriter::planClean};
    if (bytes.startsWith('R'))
        return {[=](const auto& source, const auto& tags) { return WavWriter::planWrite(source, tags, artwork); },
                &WavWriter::planClean};
    if (bytes.startsWith('F'))
        return {[=](const auto& source, const auto& tags) { return AiffWriter::planWrite(source, tags, artwork); },
                &AiffWriter::planClean};
    return {&M4aWriter::planWrite, &M4aWriter::planClean};
}

} // namespace

/// The input is the file; its last bytes pick the fields that are cleaned.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto fields = CleanerFields::fromInt((data[size - 1] | data[size - 2] << 8) & 1023);
    const Writer writer = writerOf(bytes);
    check([&](const RewriteSource& source) { return writer.write(source, someTags()); }, bytes);
    check([&](const RewriteSource& source) { return writer.write(source, {}); }, bytes);
    const TagEdits edits{fields, QStringLiteral("New"), QStringLiteral("Album")};
    check([&](const RewriteSource& source) { return writer.clean(source, edits); }, bytes);
    check([&](const RewriteSource& source) { return writer.clean(source, edits.withoutTexts()); }, bytes);
    return 0;
}
