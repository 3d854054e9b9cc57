#pragma once

#include "analysis/tempo/OnsetSeries.h"

#include <optional>
#include <span>
#include <vector>

namespace BPMAnalyzer {

/// A value and how much it counts.
struct WeightedValue {
    double value = 0;
    double weight = 0;
};

/// The first value, in ascending order, at which the weights so far reach half of all. Values that are not finite and
/// weights that are not positive are left out; nothing when none is left.
std::optional<double> weightedMedian(std::vector<WeightedValue> values);

/// A period to fractions of a frame, from the intervals of two to eight beats in all series.
/// \param period   frames; below 6 and not finite it stays as it is, as it does when fewer than three series say
///                 something or they say something else.
/// When it is cancelled, \p period.
double consensusRefinedPeriod(double period, std::span<const std::span<const float>> series, const Pace& pace);

} // namespace BPMAnalyzer
