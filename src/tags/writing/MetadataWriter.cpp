#include "tags/writing/MetadataWriter.h"

#include "core/model/AudioTags.h"
#include "platform/FileURL.h"
#include "tags/writing/ContainerWriters.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/Mp3Writer.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace MetadataWriter {

namespace {

/// What can be done with the files of one extension; null for what cannot.
struct Format {
    QLatin1StringView extension;
    void (*write)(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path);
    void (*clean)(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
                  const QString& path);
    bool (*contains)(const QByteArray& artwork, const QString& path);
};

void writeM4A(const AudioTags& tags, const std::optional<QByteArray>&, const QString& path)
{
    ContainerWriters::writeM4A(tags, path);
}

/// A format without the last operation takes no picture.
constexpr Format kFormats[] = {
    {QLatin1StringView("mp3"), &Mp3Writer::write, &Mp3Writer::clean, &Mp3Writer::contains},
    {QLatin1StringView("flac"), &ContainerWriters::writeFLAC, &ContainerWriters::cleanFLAC,
     &ContainerWriters::containsInFLAC},
    {QLatin1StringView("wav"), &ContainerWriters::writeWAV, &ContainerWriters::cleanWAV,
     &ContainerWriters::containsInWAV},
    {QLatin1StringView("aiff"), &ContainerWriters::writeAIFF, &ContainerWriters::cleanAIFF,
     &ContainerWriters::containsInAIFF},
    {QLatin1StringView("aif"), &ContainerWriters::writeAIFF, &ContainerWriters::cleanAIFF,
     &ContainerWriters::containsInAIFF},
    {QLatin1StringView("m4a"), &writeM4A, &ContainerWriters::cleanM4A, nullptr},
};

QString extensionOf(const QUrl& url)
{
    return FileURL::pathExtension(url).toLower();
}

const Format* find(const QUrl& url)
{
    const QString extension = extensionOf(url);
    const auto found =
        std::ranges::find_if(kFormats, [&](const Format& format) { return extension == format.extension; });
    return found == std::end(kFormats) ? nullptr : &*found;
}

[[noreturn]] void refuse(const QUrl& url)
{
    throw WriteError(WriteError::Case::unsupportedFormat, extensionOf(url));
}

} // namespace

void write(const AudioTags& tags, bool /*removeArtwork*/, const QUrl& url)
{
    const Format* format = find(url);
    if (!format)
        refuse(url);
    format->write(tags, std::nullopt, url.toLocalFile());
}

void assignArtwork(const QByteArray& artwork, const AudioTags& tags, const QUrl& url)
{
    const Format* format = find(url);
    if (!format || !format->contains)
        refuse(url);
    format->write(tags, artwork, url.toLocalFile());
    if (!containsArtworkBytes(artwork, url))
        throw WriteError(WriteError::Case::artworkVerificationFailed, FileURL::lastPathComponent(url));
}

void clean(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
           const QUrl& url)
{
    const Format* format = find(url);
    if (!format)
        refuse(url);
    format->clean(fields, title, album, url.toLocalFile());
}

QByteArray id3Tag(const AudioTags& tags, const std::optional<QByteArray>& artwork)
{
    return Id3v2Builder::tag(tags, artwork);
}

bool containsArtworkBytes(const QByteArray& artwork, const QUrl& url)
{
    const Format* format = find(url);
    return format && format->contains && format->contains(artwork, url.toLocalFile());
}

} // namespace MetadataWriter
