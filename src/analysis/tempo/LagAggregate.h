#pragma once

#include "analysis/tempo/LagScores.h"

namespace BPMAnalyzer {

/// A lag that may be the beat.
struct LagCandidate {
    int lag = 0;           ///< frames
    float periodicity = 0; ///< how strongly the sections repeat at this lag
    float agreement = 0;   ///< how alike the sections are in that, 0 to 1
};

/// What all sections together say of each lag.
struct LagAggregate {
    std::array<std::vector<float>, kSeriesCount> series; ///< scores per series and lag, the largest 1
    std::array<int, kSeriesCount> votes{};               ///< the best lag of each series
    std::vector<LagCandidate> candidates;                ///< every lag of the range, ascending
};

/// The middle value; of an even count the mean of the two middle ones; 0 for none.
float median(std::vector<float> values);

/// The score at \p index with shares of its double, triple and half; beyond the list there is 0.
float profileScore(std::span<const float> scores, int index);

/// \param sections      at least one. \param minimumLag   frames.
/// Errors: Error::Case::EmptyLagRange, NoCandidate.
LagAggregate aggregateScores(std::span<const SectionScores> sections, int minimumLag);

} // namespace BPMAnalyzer
