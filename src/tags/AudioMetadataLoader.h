#pragma once

#include "core/model/LoadedTrackMetadata.h"

#include <QUrl>

#include <optional>

/// Turns an audio file into what a row shows. Nothing is reported: what cannot be read keeps its default. All functions
/// block, hold no lock and share nothing; not for the main thread. A file takes
/// half a minute at most, and five seconds unless the disk is slow; what takes longer counts as unreadable.
namespace AudioMetadataLoader {

/// The caller's tags with title, artist, album, genre, comment and musical key of the file written over them where the
/// file has any, its picture, and the figures of its sound. Of several candidates the last wins, for the key the first.
/// Other tags of the file (album artist, year, track, tempo) are not read.
/// \param readsWindows1251 shows text in Latin-1 fields that is plainly Windows-1251 as Cyrillic.
LoadedTrackMetadata load(const QUrl& url, const AudioTags& fallbackTags, bool readsWindows1251 = true);
/// The same, but nothing for what is no regular file, cannot be opened, or holds neither known sound nor tags.
std::optional<LoadedTrackMetadata> loadIfReadable(const QUrl& url, const AudioTags& fallbackTags,
                                                  bool readsWindows1251 = true);
/// The bytes of the picture that load() finds, as they stand in the file; empty if there is none or the file cannot
/// be read.
QByteArray artwork(const QUrl& url);

} // namespace AudioMetadataLoader
