#include "analysis/key/KeyScores.h"

#include "analysis/key/MusicalKeyProfiles.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace MusicalKeyAnalyzer {

namespace {

/// Chosen: against divisions by zero, far below any profile of sound.
constexpr double kSmallestProduct = 1e-07;
// Shares of the score and of the quality: docs/key.md, "Scores".
constexpr double kChromaShare = 0.85;
constexpr double kBassShare = 0.15;
constexpr double kPeakednessShare = 0.65;
constexpr double kFitShare = 0.35;
/// Real music has a low peakedness; this spreads it over the whole scale.
constexpr double kPeakednessScale = 3.2;

double sumOf(std::span<const double> values)
{
    return std::accumulate(values.begin(), values.end(), 0.0);
}

PitchClasses rotated(const PitchClasses& fromTonic, int tonic)
{
    PitchClasses values;
    std::ranges::rotate_copy(fromTonic, fromTonic.end() - tonic, values.begin());
    return values;
}

/// 0 for a chroma in which all pitches sound alike, 1 for a single pitch.
double peakedness(const PitchClasses& chroma, double sum)
{
    double negativeEntropy = 0;
    for (const double value : chroma) {
        const double share = value / sum;
        if (share > 0)
            negativeEntropy += share * std::log(share);
    }
    return 1 + negativeEntropy / std::log(double(kPitchClassCount));
}

} // namespace

double pearsonCorrelation(std::span<const double> one, std::span<const double> other)
{
    if (one.empty() || one.size() != other.size())
        return 0;
    const double count = static_cast<double>(one.size());
    const double meanOfOne = sumOf(one) / count;
    const double meanOfOther = sumOf(other) / count;
    double products = 0;
    double squaresOfOne = 0;
    double squaresOfOther = 0;
    for (std::size_t i = 0; i < one.size(); ++i) {
        const double deviation = one[i] - meanOfOne;
        const double otherDeviation = other[i] - meanOfOther;
        products += deviation * otherDeviation;
        squaresOfOne += deviation * deviation;
        squaresOfOther += otherDeviation * otherDeviation;
    }
    return products / std::sqrt(std::max(squaresOfOne * squaresOfOther, kSmallestProduct));
}

double fitOfAnyKey(const PitchClasses& chroma)
{
    double highest = -1;
    for (const MusicalKeyMode mode : {MusicalKeyMode::Minor, MusicalKeyMode::Major}) {
        for (int tonic = 0; tonic < kPitchClassCount; ++tonic) {
            const PitchClasses plain = rotated(MusicalKeyProfiles::plainTemplate(mode), tonic);
            highest = std::max(highest, pearsonCorrelation(chroma, plain));
        }
    }
    return highest;
}

KeyScores allKeyScores(const PitchClasses& chroma, const PitchClasses* bass)
{
    KeyScores scores;
    std::size_t index = 0;
    for (const MusicalKeyMode mode : {MusicalKeyMode::Minor, MusicalKeyMode::Major}) {
        for (int pitchClass = 0; pitchClass < kPitchClassCount; ++pitchClass) {
            const MusicalKey key{pitchClass, mode};
            const MusicalKeyProfiles::Reference& reference = MusicalKeyProfiles::reference(key);
            double score = pearsonCorrelation(chroma, reference.chroma);
            if (bass)
                score = kChromaShare * score + kBassShare * pearsonCorrelation(*bass, reference.bass);
            scores[index++] = {key, score};
        }
    }
    return scores;
}

const KeyScore& best(const KeyScores& scores)
{
    return *std::ranges::max_element(scores, {}, &KeyScore::score);
}

double tonalQuality(const PitchClasses& chroma)
{
    const double sum = sumOf(chroma);
    if (!(sum > 0))
        return 0;
    const double fit = best(allKeyScores(chroma, nullptr)).score;
    const double quality =
        peakedness(chroma, sum) * kPeakednessShare * kPeakednessScale + std::max(fit, 0.0) * kFitShare;
    return std::clamp(quality, 0.0, 1.0);
}

} // namespace MusicalKeyAnalyzer
