#pragma once

#include "analysis/tempo/BPMAnalyzer.h"
#include "analysis/tempo/LagRanking.h"

namespace BPMAnalyzer {

/// Another tempo that is preferred to the best one if it is nearly as likely.
struct AmbiguityRule {
    double otherTempo = 0;           ///< BPM
    float smallestRelativeScore = 0; ///< against the best
    double tolerance = 0;            ///< BPM
};

/// What dance music is mistaken for at a tempo. \param tempo   a folded tempo.
std::optional<AmbiguityRule> ambiguityRule(double tempo);

/// The lag to fractions of a frame: the top of the parabola through it and its neighbours; itself at the edges.
/// \param candidates   of consecutive lags, ascending.
double refinedPeakLag(int lag, std::span<const LagCandidate> candidates);

/// The candidate that ambiguityRule() prefers to the first, else the first. \param ranking   not empty.
const RankedCandidate& selectCandidate(std::span<const RankedCandidate> ranking,
                                       std::span<const LagCandidate> candidates);

/// 140 for a tempo of at most 72 BPM when the ranking has a likely candidate of about twice the tempo; else \p bpm.
double liftedTempo(double bpm, std::span<const RankedCandidate> ranking);

/// How sure a tempo is, 0 to 1: strength, agreement of the sections, and distance to the next candidate of another
/// tempo. \param bpm   before it was lifted.
double confidenceOf(const RankedCandidate& selected, double bpm, std::span<const RankedCandidate> ranking);

/// The first eight tempos of the ranking.
QList<Estimate::Alternative> alternativesOf(std::span<const RankedCandidate> ranking);

} // namespace BPMAnalyzer
