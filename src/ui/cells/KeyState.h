#pragma once

#include "core/model/MusicalKey.h"
#include "core/model/Track.h"

#include <optional>

class Keys;

/// What is known of the key of a row of the key section.
struct KeyState {
    /// What has become of the search for the key, in the order in which it goes.
    enum class Step { New, Queued, Running, Determined, Undetermined };
    Step step = Step::New;
    std::optional<MusicalKeyAnalysis> analysis = {}; ///< where it is determined

    /// Asked of the store. Thread: main.
    static KeyState of(const Keys& keys, const TrackID& id);
};
