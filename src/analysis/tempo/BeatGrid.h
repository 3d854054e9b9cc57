#pragma once

#include "analysis/tempo/OnsetSeries.h"

#include <optional>
#include <span>

namespace BPMAnalyzer {

/// An onset series and what a grid of beats is measured by. Does not own the series.
struct BeatGridContext {
    std::span<const float> onset;
    float strongest = 0;       ///< the largest value
    float activeThreshold = 0; ///< what a beat has to reach to be one that sounds
    float totalSalience = 0;   ///< the sum of all values

    /// Nothing for a series of fewer than 17 values or without a positive one.
    static std::optional<BeatGridContext> of(std::span<const float> onset);
};

/// How well beats every \p period frames meet the onsets, at the phase where they do best: by the strength of the
/// beats, by how much of all onsets lies near them, and by how many of them sound. \return   0 to 1; 0 for a period
/// below 2 and where fewer than 6 beats fit. When it is cancelled, the best so far.
float beatGridFitness(const BeatGridContext& context, double period, Pace& pace);

} // namespace BPMAnalyzer
