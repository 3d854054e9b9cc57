#include "analysis/tempo/LagRanking.h"

#include "analysis/tempo/BPMError.h"
#include "analysis/tempo/FoldedTempo.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 5. Weights of what is added to the periodicity.
constexpr int kCandidatesBetweenChecks = 4;
constexpr double kVoteTolerance = 3; // BPM
constexpr float kDoubleWeight = 0.24F;
constexpr float kTripleWeight = 0.12F;
constexpr float kHalfWeight = 0.12F;
constexpr float kSharpnessWeight = 0.16F;
constexpr float kAgreementWeight = 0.12F;
constexpr float kTrackingWeight = 0.25F;
constexpr float kVoteWeight = 0.20F;
constexpr float kProfileWeight = 0.16F;

float trackingOf(std::span<const SectionGrid> sections, int lag, Pace& pace)
{
    std::vector<float> values;
    values.reserve(sections.size());
    for (const SectionGrid& section : sections) {
        float value = 0;
        for (std::size_t k = 0; k < kSeriesCount; ++k) {
            if (section[k])
                value += kSeriesWeights[k] * beatGridFitness(*section[k], lag, pace);
        }
        values.push_back(value);
    }
    return median(std::move(values));
}

/// The share of the series whose best lag is of the same tempo.
float voteShare(const std::array<int, kSeriesCount>& votes, int lag)
{
    const double tempo = foldedTempo(lag);
    const auto agrees = [&](int vote) { return std::abs(foldedTempo(vote) - tempo) <= kVoteTolerance; };
    return float(std::ranges::count_if(votes, agrees)) / float(kSeriesCount);
}

float profileOf(const LagAggregate& aggregate, int lag)
{
    std::vector<float> values;
    for (const std::vector<float>& scores : aggregate.series)
        values.push_back(profileScore(scores, lag));
    return median(std::move(values));
}

/// Added in one fixed order, so that equal candidates stay equal.
float scoreOf(const LagAggregate& aggregate, const LagCandidate& candidate, float tracking)
{
    const int lag = candidate.lag;
    const auto near = [&](int other) { return neighborScore(aggregate.candidates, other); };
    const float sharpness = std::max(0.0F, candidate.periodicity - std::max(near(lag - 2), near(lag + 2)));
    return candidate.periodicity + kDoubleWeight * near(2 * lag) + kTripleWeight * near(3 * lag) +
           kHalfWeight * near(std::max(lag / 2, 1)) + kSharpnessWeight * sharpness +
           kAgreementWeight * candidate.agreement + kTrackingWeight * tracking +
           kVoteWeight * voteShare(aggregate.votes, lag) + kProfileWeight * profileOf(aggregate, lag);
}

} // namespace

SectionGrid gridOf(const OnsetSection& section)
{
    SectionGrid grid;
    for (std::size_t k = 0; k < kSeriesCount; ++k)
        grid[k] = BeatGridContext::of(section[k]);
    return grid;
}

float neighborScore(std::span<const LagCandidate> candidates, int lag)
{
    float best = 0;
    if (candidates.empty())
        return best;
    for (int near = lag - 1; near <= lag + 1; ++near) {
        const int index = near - candidates.front().lag;
        if (index >= 0 && index < static_cast<int>(candidates.size()))
            best = std::max(best, candidates[std::size_t(index)].periodicity);
    }
    return best;
}

std::vector<RankedCandidate> rankCandidates(const LagAggregate& aggregate, std::span<const SectionGrid> sections,
                                            Pace& pace)
{
    std::vector<RankedCandidate> ranking;
    for (int i = 0; const LagCandidate& candidate : aggregate.candidates) {
        if (i % kCandidatesBetweenChecks == 0)
            pace.throwIfCancelled();
        pace.checkpoint(i++, kCandidatesBetweenChecks);
        const float tracking = trackingOf(sections, candidate.lag, pace);
        pace.throwIfCancelled();
        ranking.push_back(
            {.candidate = candidate, .score = scoreOf(aggregate, candidate, tracking), .tracking = tracking});
    }
    if (ranking.empty())
        throw Error(Error::Case::EmptyRanking);
    std::ranges::stable_sort(ranking, std::ranges::greater(), &RankedCandidate::score);
    return ranking;
}

} // namespace BPMAnalyzer
