#include "tags/keeping/KeepingWriter.h"

#include "platform/FileURL.h"
#include "tags/keeping/KeepingPlanners.h"
#include "tags/writing/MetadataWriter.h"
#include "tags/writing/PlannedRewrite.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace KeepingWriter {

namespace {

struct Format {
    QLatin1StringView extension;
    RewritePlan (*plan)(const RewriteSource& source, const KeepEdits& edits);
    bool takesPictures;
};
constexpr Format kFormats[] = {
    {QLatin1StringView("mp3"), &KeepingPlanners::planMp3, true},
    {QLatin1StringView("flac"), &KeepingPlanners::planFlac, true},
    {QLatin1StringView("wav"), &KeepingPlanners::planWav, true},
    {QLatin1StringView("aiff"), &KeepingPlanners::planAiff, true},
    {QLatin1StringView("aif"), &KeepingPlanners::planAiff, true},
    {QLatin1StringView("m4a"), &KeepingPlanners::planM4a, false},
};

void save(const KeepEdits& edits, const QUrl& url)
{
    const QString extension = FileURL::pathExtension(url).toLower();
    const auto format = std::ranges::find(kFormats, extension, &Format::extension);
    if (format == std::end(kFormats) || (edits.artwork && !format->takesPictures))
        throw WriteError(WriteError::Case::unsupportedFormat, extension);
    PlannedRewrite::rewrite(url.toLocalFile(), extension,
                            [&](const RewriteSource& source) { return format->plan(source, edits); });
}

} // namespace

void write(const AudioTags& tags, TagFields fields, const QUrl& url)
{
    save({tags, fields}, url);
}

void assignArtwork(const QByteArray& artwork, const AudioTags& tags, TagFields fields, const QUrl& url)
{
    const auto fail = [&] {
        throw WriteError(WriteError::Case::artworkVerificationFailed, FileURL::lastPathComponent(url));
    };
    if (artwork.isEmpty()) // would be found nowhere
        fail();
    save({tags, fields, artwork}, url);
    if (!MetadataWriter::containsArtworkBytes(artwork, url))
        fail();
}

} // namespace KeepingWriter
