#include "analysis/tempo/TempoDecision.h"

#include "analysis/tempo/FoldedTempo.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 6. Tempos in BPM.
constexpr float kSmallestDivisor = 1e-6F;
constexpr qsizetype kMaximumAlternatives = 8;
constexpr double kLiftedTempo = 140;
constexpr double kSlowestTempo = 70;
constexpr double kFastestSlowTempo = 72;

float relativeScore(const RankedCandidate& candidate, std::span<const RankedCandidate> ranking)
{
    return candidate.score / std::max(ranking.front().score, kSmallestDivisor);
}

double tempoOf(const RankedCandidate& candidate)
{
    return foldedTempo(candidate.candidate.lag);
}

} // namespace

std::optional<AmbiguityRule> ambiguityRule(double tempo)
{
    const double faster = tempo * 1.5;
    const double slower = tempo * 0.75;
    if (tempo < 93)
        return AmbiguityRule{faster, 0.70F, 5};
    if (tempo < 108)
        return std::nullopt;
    if (tempo <= 118)
        return AmbiguityRule{slower, 0.72F, 3};
    if (tempo < 129)
        return AmbiguityRule{slower, 0.85F, 5};
    if (tempo <= 131)
        return AmbiguityRule{slower, 0.72F, 3};
    return AmbiguityRule{slower, 0.64F, 5};
}

double refinedPeakLag(int lag, std::span<const LagCandidate> candidates)
{
    const int index = candidates.empty() ? 0 : lag - candidates.front().lag;
    if (index < 1 || index + 1 >= static_cast<int>(candidates.size()))
        return lag;
    const auto periodicity = [&](int i) { return double(candidates[std::size_t(i)].periodicity); };
    const double left = periodicity(index - 1);
    const double right = periodicity(index + 1);
    const double denominator = left - 2 * periodicity(index) + right;
    if (std::abs(denominator) <= 1e-6)
        return lag;
    return lag + std::clamp(0.5 * (left - right) / denominator, -0.5, 0.5);
}

const RankedCandidate& selectCandidate(std::span<const RankedCandidate> ranking,
                                       std::span<const LagCandidate> candidates)
{
    const RankedCandidate& top = ranking.front();
    const std::optional<AmbiguityRule> rule = ambiguityRule(foldedTempo(refinedPeakLag(top.candidate.lag, candidates)));
    if (!rule)
        return top;
    const auto other = std::ranges::find_if(ranking, [&](const RankedCandidate& candidate) {
        return std::abs(tempoOf(candidate) - rule->otherTempo) <= rule->tolerance &&
               relativeScore(candidate, ranking) >= rule->smallestRelativeScore;
    });
    return other != ranking.end() ? *other : top;
}

double liftedTempo(double bpm, std::span<const RankedCandidate> ranking)
{
    if (bpm > kFastestSlowTempo)
        return bpm;
    const float smallestScore = bpm == kSlowestTempo ? 0.6F : 0.75F;
    const bool isLifted = std::ranges::any_of(ranking, [&](const RankedCandidate& candidate) {
        const double tempo = tempoOf(candidate);
        return tempo >= 134 && tempo <= kLiftedTempo && relativeScore(candidate, ranking) >= smallestScore;
    });
    return isLifted ? kLiftedTempo : bpm;
}

double confidenceOf(const RankedCandidate& selected, double bpm, std::span<const RankedCandidate> ranking)
{
    constexpr double kSameTempo = 2; // BPM; neighbouring lags of the same beat are no competitors
    const auto competitor = std::ranges::find_if(ranking, [&](const RankedCandidate& candidate) {
        return candidate.candidate.lag != selected.candidate.lag && std::abs(tempoOf(candidate) - bpm) > kSameTempo;
    });
    const double score = selected.score;
    const double margin = std::max(competitor == ranking.end() ? score : score - double(competitor->score), 0.0);
    const double strength = std::clamp(double(selected.candidate.periodicity) / 0.48, 0.0, 1.0);
    const double distance = std::min(6 * margin / std::max(std::abs(score), double(kSmallestDivisor)), 1.0);
    return std::clamp(0.48 * strength + 0.34 * double(selected.candidate.agreement) + 0.18 * distance, 0.0, 1.0);
}

QList<Estimate::Alternative> alternativesOf(std::span<const RankedCandidate> ranking)
{
    QList<Estimate::Alternative> alternatives;
    for (const RankedCandidate& candidate : ranking) {
        const double tempo = tempoOf(candidate);
        if (std::ranges::find(alternatives, tempo, &Estimate::Alternative::bpm) != alternatives.end())
            continue;
        alternatives.append({tempo, std::min(double(relativeScore(candidate, ranking)), 1.0)});
        if (alternatives.size() == kMaximumAlternatives)
            break;
    }
    return alternatives;
}

} // namespace BPMAnalyzer
