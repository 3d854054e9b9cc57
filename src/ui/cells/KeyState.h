#pragma once

#include "core/model/MusicalKey.h"
#include "core/model/Track.h"

#include <optional>

class Keys;

/// What is known of the key of a row of the key section.
struct KeyState {
    enum class Step { New, Queued, Running, Determined, Undetermined };
    Step step = Step::New;
    std::optional<MusicalKeyAnalysis> analysis = {}; ///< where it is determined

    static KeyState of(const Keys& keys, const TrackID& id);
};
