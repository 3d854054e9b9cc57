#pragma once

#include "core/model/Track.h"
#include "platform/files/FileStamp.h"
#include "platform/files/Trash.h"

#include <optional>

/// A row that left a list, with what brings it back.
struct RemovedTrack {
    Track track;           ///< the full value
    int originalIndex = 0; ///< its place in the list before the removal
    /// Where its file is now; nothing for a row whose file stayed.
    std::optional<TrashedItem> trashed;
    /// Its file when the row left; nothing until that is known.
    std::optional<FileStamp> stamp = std::nullopt;
    bool removedFromPlaylistOnly = false; ///< it stayed in the list, as a favourite
    bool removedFromCoversOnly = false;   ///< it stayed in the list, as a row of the playlist
    Track::MetadataDestination list = Track::MetadataDestination::Library;

    /// Whether the file is what it was. \param now as it is.
    bool isSameFile(const FileStamp& now) const { return stamp && stamp->isSameFile(now); }
    /// Whether it stayed in the list, out of one section.
    bool isStillListed() const { return removedFromPlaylistOnly || removedFromCoversOnly; }
};
