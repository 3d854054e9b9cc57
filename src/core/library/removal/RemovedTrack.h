#pragma once

#include "core/model/Track.h"
#include "platform/files/Trash.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <optional>

/// A row that left a list, with what brings it back.
struct RemovedTrack {
    Track track;           ///< the full value
    int originalIndex = 0; ///< its place in the list before the removal
    std::optional<TrashedItem> trashed;
    bool removedFromPlaylistOnly = false; ///< it stayed in the list, as a favourite
    Track::MetadataDestination list = Track::MetadataDestination::Library;

    /// Where the Trash put the file.
    std::optional<QUrl> trashedURL() const { return trashed ? std::optional(trashed->trashedURL()) : std::nullopt; }
};

/// What one action of the user removed.
struct RemovalStep {
    QList<RemovedTrack> entries;
    QString actionName; ///< localisation key
    quint64 moment = 0; ///< see nextUndoMoment()

    bool holdsTrashedFile() const
    {
        return std::ranges::any_of(entries, [](const RemovedTrack& entry) { return entry.trashed.has_value(); });
    }
};
