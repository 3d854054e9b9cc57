#pragma once

#include "analysis/key/ChromaProfile.h"

namespace MusicalKeyAnalyzer {

/// A profile brought to the tuning that the music has.
struct TunedChroma {
    PitchClasses chroma = {};     ///< of length 1, or all 0
    PitchClasses bassChroma = {}; ///< of length 1, or all 0
    double tuningCents = 0;       ///< -100/3, 0 or 100/3
};

/// Three bins to a semitone become one, once for each tuning; the tuning wins at which the result looks most like any
/// key, the lowest of equal ones.
TunedChroma tuned(const ChromaProfile& profile);

} // namespace MusicalKeyAnalyzer
