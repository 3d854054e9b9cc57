#include "analysis/tempo/MelMap.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 2; from the lowest drum to the top of what tells one hit from another.
constexpr double kBottomMel = 54.98623108648935; // 35 Hz
constexpr double kTopHz = 5000;

// The usual scale: O'Shaughnessy, Speech Communication, 1987.
double melOf(double hz)
{
    return 2595 * std::log10(1 + hz / 700);
}

double hzOf(double mel)
{
    return 700 * (std::pow(10, mel / 2595) - 1);
}

} // namespace

MelMap::MelMap(int frameSize, double sampleRate)
    : bands()
{
    const double topMel = melOf(std::min(sampleRate / 2, kTopHz));
    std::array<int, kBandCount + 1> edges{};
    for (int i = 0; i <= kBandCount; ++i) {
        const double hz = hzOf(kBottomMel + (topMel - kBottomMel) * i / kBandCount);
        edges[i] = std::clamp(static_cast<int>(std::lround(hz * frameSize / sampleRate)), 1, frameSize / 2 - 1);
    }
    for (int i = 0; i < kBandCount; ++i)
        bands[i] = {edges[i], edges[i + 1]};
    bands.back().end += 1; // no later band takes the last edge
}

} // namespace BPMAnalyzer
