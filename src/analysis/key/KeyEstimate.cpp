// The sections' weighted mean is scored against all keys; each section by itself has a vote. The best score is the key;
// its lead and its share of the votes are the confidence.

#include "analysis/key/KeyScores.h"
#include "analysis/key/MusicalKeyAnalyzer.h"

#include <algorithm>
#include <cmath>

namespace MusicalKeyAnalyzer {

namespace {

using Section = MusicalKeyFeatureVector::Section;

// Origins: docs/key.md, "Estimate".
constexpr double kSmallestWeight = 0.15;
constexpr double kAgreementShare = 0.28;
constexpr double kGapShare = 0.72;
constexpr double kFullGap = 0.18;
constexpr qsizetype kAlternatives = 4;
constexpr double kSmallestStrength = 1e-06;

PitchClasses weightedMean(const std::vector<Section>& sections, PitchClasses Section::*values)
{
    PitchClasses mean = {};
    double weights = 0;
    for (const Section& section : sections) {
        const double weight = std::max(section.tonalQuality, kSmallestWeight);
        weights += weight;
        for (std::size_t i = 0; i < mean.size(); ++i)
            mean[i] += weight * (section.*values)[i];
    }
    for (double& value : mean)
        value /= weights;
    normalize(mean);
    return mean;
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::vector<MusicalKey> votes(const std::vector<Section>& sections)
{
    std::vector<MusicalKey> keys;
    for (const Section& section : sections)
        keys.push_back(best(allKeyScores(section.chroma, &section.bassChroma)).key);
    return keys;
}

/// Best first; equal ones in the order of KeyScores. Scores that are no numbers are out of the running.
std::vector<Candidate> candidates(const std::vector<Section>& sections)
{
    const std::vector<MusicalKey> given = votes(sections);
    const PitchClasses bass = weightedMean(sections, &Section::bassChroma);
    std::vector<Candidate> result;
    for (const KeyScore& score : allKeyScores(weightedMean(sections, &Section::chroma), &bass)) {
        if (!std::isfinite(score.score))
            continue;
        const auto count = std::ranges::count(given, score.key);
        result.push_back({score.key, score.score, double(count) / double(given.size())});
    }
    std::ranges::stable_sort(result, std::ranges::greater(), &Candidate::score);
    return result;
}

double confidenceIn(const std::vector<Candidate>& ranked)
{
    const double gap = ranked.size() > 1 ? ranked[0].score - ranked[1].score : 0;
    return std::clamp(kAgreementShare * ranked[0].sectionAgreement + kGapShare * std::max(gap, 0.0) / kFullGap, 0.0,
                      1.0);
}

} // namespace

MusicalKeyAnalysis estimate(const MusicalKeyFeatureVector& features)
{
    const std::vector<Section>& sections = features.sections;
    if (sections.empty())
        throw Error(Error::Case::NoHarmony);
    const std::vector<Candidate> ranked = candidates(sections);
    if (ranked.empty())
        throw Error(Error::Case::NoCandidates);
    MusicalKeyAnalysis analysis;
    analysis.key = ranked[0].key;
    analysis.confidence = confidenceIn(ranked);
    const double strongest = std::max(ranked[0].score + 1, kSmallestStrength);
    for (qsizetype i = 0; i < std::min(kAlternatives, qsizetype(ranked.size())); ++i) {
        const Candidate& candidate = ranked[std::size_t(i)];
        analysis.alternatives.append({candidate.key, std::clamp((candidate.score + 1) / strongest, 0.0, 1.0)});
    }
    std::vector<double> cents;
    std::ranges::transform(sections, std::back_inserter(cents), &Section::tuningCents);
    analysis.tuningCents = median(std::move(cents));
    return analysis;
}

} // namespace MusicalKeyAnalyzer
