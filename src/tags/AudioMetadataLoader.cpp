#include "tags/AudioMetadataLoader.h"

#include "platform/FileURL.h"
#include "tags/AssetReader.h"
#include "tags/MP3Header.h"
#include "tags/bytes/FileBytes.h"
#include "tags/fields/MusicalKeyItem.h"

#include <cmath>

namespace AudioMetadataLoader {

namespace {

QString AudioTags::*tagField(CommonKey key)
{
    switch (key) {
    case CommonKey::Title:
        return &AudioTags::title;
    case CommonKey::Artist:
        return &AudioTags::artist;
    case CommonKey::AlbumName:
        return &AudioTags::album;
    case CommonKey::Type:
        return &AudioTags::genre;
    case CommonKey::Description:
        return &AudioTags::comment;
    case CommonKey::Artwork:
        break;
    }
    return nullptr;
}

/// Writes what the items say over \p tags. \return the last picture, null without one.
QByteArray takeItems(const std::vector<MetadataItem>& items, AudioTags& tags)
{
    QByteArray artwork;
    for (const MetadataItem& item : items) {
        if (tags.musicalKey.isEmpty())
            tags.musicalKey = MusicalKeyItem::value(item).value_or(QString());
        if (!item.commonKey)
            continue;
        if (item.commonKey == CommonKey::Artwork && item.dataValue)
            artwork = *item.dataValue;
        QString AudioTags::*const field = tagField(*item.commonKey);
        if (field && item.stringValue && !item.stringValue->isEmpty())
            tags.*field = *item.stringValue;
    }
    return artwork;
}

/// What can be said about the bit rate where the container did not: the first frame, else the size over the time.
double estimatedBitRate(const QUrl& url, qint64 fileSize, quint64 audioDataByteCount, double seconds)
{
    if (const double first = MP3Header::bitRate(url).value_or(0); first != 0)
        return first;
    if (seconds <= 0)
        return 0;
    const double bytes = audioDataByteCount != 0 ? double(audioDataByteCount) : double(fileSize);
    return bytes * 8 / seconds;
}

double finiteSeconds(const std::optional<Sound>& sound)
{
    const double seconds = sound ? sound->seconds.value_or(0) : 0;
    return std::isfinite(seconds) ? seconds : 0;
}

LoadedTrackMetadata unreadMetadata(const QUrl& url, const AudioTags& fallbackTags)
{
    LoadedTrackMetadata metadata;
    metadata.tags = fallbackTags;
    metadata.format = FileURL::pathExtension(url).toUpper();
    return metadata;
}

} // namespace

std::optional<LoadedTrackMetadata> loadIfReadable(const QUrl& url, const AudioTags& fallbackTags, bool readsWindows1251)
{
    const std::unique_ptr<FileBytes> file = FileBytes::open(url);
    if (!file)
        return std::nullopt;
    const Asset asset = AssetReader::read(*file, FileURL::pathExtension(url), {readsWindows1251});
    if (!asset.sound && asset.items.empty())
        return std::nullopt;
    LoadedTrackMetadata metadata = unreadMetadata(url, fallbackTags);
    metadata.artworkData = ArtworkData::intern(takeItems(asset.items, metadata.tags));
    metadata.duration = finiteSeconds(asset.sound);
    const SoundDetails details = asset.sound ? asset.sound->details : SoundDetails();
    metadata.bitDepth = details.bitDepth;
    metadata.bitRate = details.bitRate != 0
                           ? details.bitRate
                           : estimatedBitRate(url, file->size(), details.audioDataByteCount, metadata.duration);
    return metadata;
}

LoadedTrackMetadata load(const QUrl& url, const AudioTags& fallbackTags, bool readsWindows1251)
{
    std::optional<LoadedTrackMetadata> metadata = loadIfReadable(url, fallbackTags, readsWindows1251);
    if (metadata)
        return *std::move(metadata);
    LoadedTrackMetadata unread = unreadMetadata(url, fallbackTags);
    unread.bitRate = MP3Header::bitRate(url).value_or(0);
    return unread;
}

QByteArray artwork(const QUrl& url)
{
    const std::unique_ptr<FileBytes> file = FileBytes::open(url);
    if (!file)
        return {};
    const Asset asset = AssetReader::read(*file, FileURL::pathExtension(url), AssetReader::Options());
    AudioTags ignored;
    return takeItems(asset.items, ignored);
}

} // namespace AudioMetadataLoader
