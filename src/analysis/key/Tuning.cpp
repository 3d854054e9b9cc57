#include "analysis/key/Tuning.h"

#include "analysis/key/KeyScores.h"

#include <limits>

namespace MusicalKeyAnalyzer {

namespace {

// Weights of the bins beside the middle one. Chosen: docs/key.md, "Tuning".
constexpr double kNeighbourWeight = 0.45;
constexpr double kBassNeighbourWeight = 0.35;
constexpr double kCentsPerBin = 100.0 / kBinsPerSemitone;

/// \param offset   of the tuning, in bins.
PitchClasses folded(const ChromaBins& bins, int offset, double neighbourWeight)
{
    const auto bin = [&bins](int index) { return bins[static_cast<std::size_t>(wrapped(index, kChromaBinCount))]; };
    PitchClasses values;
    for (int pitchClass = 0; pitchClass < kPitchClassCount; ++pitchClass) {
        const int middle = pitchClass * kBinsPerSemitone + offset;
        values[static_cast<std::size_t>(pitchClass)] =
            bin(middle) + neighbourWeight * (bin(middle - 1) + bin(middle + 1));
    }
    normalize(values);
    return values;
}

} // namespace

TunedChroma tuned(const ChromaProfile& profile)
{
    TunedChroma best;
    double bestFit = -std::numeric_limits<double>::infinity();
    int bestOffset = 0;
    for (const int offset : {-1, 0, 1}) {
        const PitchClasses chroma = folded(profile.chroma, offset, kNeighbourWeight);
        const double fit = fitOfAnyKey(chroma);
        if (fit > bestFit) {
            bestFit = fit;
            bestOffset = offset;
            best.chroma = chroma;
        }
    }
    best.bassChroma = folded(profile.bass, bestOffset, kBassNeighbourWeight);
    best.tuningCents = bestOffset * kCentsPerBin;
    return best;
}

} // namespace MusicalKeyAnalyzer
