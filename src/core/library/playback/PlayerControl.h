#pragma once

#include "core/model/Track.h"

#include <optional>

/// What the library asks of the player, which stands in a layer of its own. Thread: main.
class PlayerControl {
public:
    virtual ~PlayerControl() = default;

    /// The track that is being played, paused or opened.
    virtual std::optional<TrackID> currentID() const = 0;
    virtual void play(const Track& track) = 0;
    virtual void stopAndClear() = 0;
};
