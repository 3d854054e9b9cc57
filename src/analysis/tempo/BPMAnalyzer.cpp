#include "analysis/tempo/BPMAnalyzer.h"

#include "analysis/decoding/AudioPCMDecoder.h"
#include "analysis/tempo/AnalysisSections.h"
#include "analysis/tempo/FoldedTempo.h"
#include "analysis/tempo/PeriodConsensus.h"
#include "analysis/tempo/TempoDecision.h"
#include "platform/process/FFmpegExecutable.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 1; a decoder that takes longer for that much hangs.
constexpr double kMaximumSeconds = 132;
constexpr async::Duration kDecoderTimeout = async::seconds(30);
/// The search always goes this far; faster lags are folded, and tell a beat from its half.
constexpr double kFastestSearched = 280;
/// Beyond any section, and still safe to multiply.
constexpr double kLongestLag = 1e6;

void checkRange(double minimum, double maximum)
{
    if (!(minimum > 0) || !(minimum < maximum))
        throw Error(Error::Case::BadRange);
}

LagRange lagRange(double minimum, double maximum)
{
    const auto lagOf = [](double bpm) {
        return static_cast<int>(std::clamp(std::round(kTempoConstant / bpm), 1.0, kLongestLag));
    };
    return {.minimum = lagOf(std::max(maximum, kFastestSearched)), .maximum = lagOf(minimum)};
}

std::vector<SectionScores> scoresOf(std::span<const OnsetSection> sections, LagRange lags, Pace& pace)
{
    std::vector<SectionScores> scores;
    for (const OnsetSection& section : sections) {
        std::optional<SectionScores> ofSection = lagScores(section, lags, pace);
        pace.throwIfCancelled();
        if (ofSection)
            scores.push_back(std::move(*ofSection));
    }
    if (scores.empty())
        throw Error(Error::Case::NoLagScores);
    return scores;
}

Estimate decide(std::span<const RankedCandidate> ranking, std::span<const LagCandidate> candidates,
                std::span<const OnsetSection> sections, const Pace& pace)
{
    std::vector<std::span<const float>> series;
    for (const OnsetSection& section : sections)
        series.insert(series.end(), section.begin(), section.end());
    const RankedCandidate& selected = selectCandidate(ranking, candidates);
    const double period = consensusRefinedPeriod(refinedPeakLag(selected.candidate.lag, candidates), series, pace);
    pace.throwIfCancelled();
    const double bpm = foldedTempo(period);
    return {.bpm = liftedTempo(bpm, ranking),
            .confidence = confidenceOf(selected, bpm, ranking),
            .alternatives = alternativesOf(ranking)};
}

} // namespace

Estimate estimateDetailed(const QUrl& url, double minimum, double maximum, bool lowImpact,
                          std::optional<bool> decoderLowPriority, std::stop_token stop, const WorkerClock& clock)
{
    using AudioPCMDecoder::DecoderError;
    checkRange(minimum, maximum);
    const std::optional<QUrl> decoder = FFmpegExecutable::url();
    if (!decoder)
        throw DecoderError(DecoderError::Case::FFmpegUnavailable);
    const std::vector<float> samples =
        AudioPCMDecoder::monoSamples(url, kSampleRate, kMaximumSeconds, decoderLowPriority.value_or(lowImpact),
                                     *decoder, kDecoderTimeout, stop, clock);
    return estimateDetailed(samples, minimum, maximum, lowImpact, stop, clock);
}

Estimate estimateDetailed(std::span<const float> samples, double minimum, double maximum, bool lowImpact,
                          std::stop_token stop, const WorkerClock& clock)
{
    checkRange(minimum, maximum);
    Pace pace{.stop = std::move(stop), .budget = CooperativeDSPBudget(lowImpact, clock)};
    const LagRange lags = lagRange(minimum, maximum);
    pace.throwIfCancelled();
    const std::vector<OnsetSection> sections = analysisSections(samples, pace);
    pace.throwIfCancelled();
    if (sections.empty())
        throw Error(Error::Case::NoSection);
    const LagAggregate aggregate = aggregateScores(scoresOf(sections, lags, pace), lags.minimum);
    std::vector<SectionGrid> grids;
    std::ranges::transform(sections, std::back_inserter(grids), gridOf);
    return decide(rankCandidates(aggregate, grids, pace), aggregate.candidates, sections, pace);
}

} // namespace BPMAnalyzer
