#pragma once

#include "analysis/tempo/OnsetSeries.h"

#include <optional>
#include <span>
#include <vector>

namespace BPMAnalyzer {

/// One list of scores per onset series, each at the index of its lag.
using SectionScores = std::array<std::vector<float>, kSeriesCount>;

/// Inclusive, in frames.
struct LagRange {
    int minimum = 1;
    int maximum = 1;
};

/// How alike a series is to itself \p limit frames later and less: normalised correlation, 0 to 1 for values that are
/// not negative.
/// \return   limit + 1 scores, that of lag 0 being 0; all 0 when the limit is not below the length. When it is
///           cancelled, the scores so far.
std::vector<float> autocorrelationScores(std::span<const float> series, int limit, Pace& pace);

/// How often peaks of a series follow each other in steps of a lag, or of two, three and four lags; stronger peaks
/// count for more.
/// \return   lags.maximum + 1 scores, the largest 1 unless all are 0. When it is cancelled, the scores so far.
std::vector<float> peakIntervalScores(std::span<const float> series, LagRange lags, Pace& pace);

/// Both kinds of score fused for each series of a section; nothing when the section is too short for the lags.
std::optional<SectionScores> lagScores(const OnsetSection& section, LagRange lags, Pace& pace);

} // namespace BPMAnalyzer
