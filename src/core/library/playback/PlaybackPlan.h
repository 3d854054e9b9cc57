#pragma once

#include "core/model/Track.h"

#include <QList>
#include <QSet>

#include <optional>

/// Where playback goes on: pure functions of the rows.
namespace PlaybackPlan {

/// What becomes of the player when rows go.
struct Move {
    /// The player goes on as it is, plays `track`, or is emptied.
    enum class Kind { Stay, Play, Stop };
    Kind kind = Kind::Stay;
    std::optional<Track> track; ///< what to play
};

/// The first row behind the current one that survives, else the nearest survivor before it, else a stop. Stays when the
/// current track is not removed or was not among the rows. \param rows as they were before the removal.
Move afterRemoving(const std::optional<TrackID>& current, const QSet<TrackID>& removed, const QList<Track>& rows);

} // namespace PlaybackPlan
