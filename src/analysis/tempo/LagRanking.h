#pragma once

#include "analysis/tempo/BeatGrid.h"
#include "analysis/tempo/LagAggregate.h"

namespace BPMAnalyzer {

/// A lag with all that was found for and against it.
struct RankedCandidate {
    LagCandidate candidate;
    float score = 0;
    float tracking = 0; ///< how well a grid of beats fits, 0 to 1
};

/// The grid contexts of one section, nothing for series without onsets. Do not own the series.
using SectionGrid = std::array<std::optional<BeatGridContext>, kSeriesCount>;
/// \param section outlives the result
SectionGrid gridOf(const OnsetSection& section);

/// The largest periodicity of the candidates within one frame of \p lag; 0 if there is none.
/// \param candidates   of consecutive lags, ascending.
float neighborScore(std::span<const LagCandidate> candidates, int lag);

/// All candidates, the best first, of equal ones the shorter lag.
/// Errors: Error::Case::EmptyRanking; async::Cancelled.
std::vector<RankedCandidate> rankCandidates(const LagAggregate& aggregate, std::span<const SectionGrid> sections,
                                            Pace& pace);

} // namespace BPMAnalyzer
