#pragma once

#include "core/model/Track.h"

#include <optional>

/// What the library asks of the player, which stands in a layer of its own. Thread: main.
class PlayerControl {
public:
    virtual ~PlayerControl() = default;

    /// The track that is being played, paused or opened.
    virtual std::optional<TrackID> currentID() const = 0;
    /// Opens and plays a track in place of the present one. Returns at once.
    virtual void play(const Track& track) = 0;
    /// Ends the sound and forgets the track.
    virtual void stopAndClear() = 0;
};
