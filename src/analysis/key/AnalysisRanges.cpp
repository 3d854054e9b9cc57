#include "analysis/key/AnalysisRanges.h"

#include <algorithm>
#include <cmath>

namespace MusicalKeyAnalyzer {

namespace {

/// Chosen: docs/key.md, "Sections".
constexpr std::size_t kRangeSeconds = 12;
/// Shares of the space that the ranges can be moved in; see docs/key.md.
constexpr double kPlaces[] = {0.04, 0.17, 0.30, 0.43, 0.57, 0.70, 0.83, 0.96};

} // namespace

std::vector<AnalysisRange> analysisRanges(std::size_t sampleCount, int sampleRate)
{
    const std::size_t length = std::max(static_cast<std::size_t>(sampleRate) * kRangeSeconds, kFrameSize);
    if (sampleCount <= length)
        return {{0, sampleCount}};
    const double space = static_cast<double>(sampleCount - length);
    std::vector<AnalysisRange> ranges;
    for (const double place : kPlaces)
        ranges.push_back({static_cast<std::size_t>(std::clamp(std::round(place * space), 0.0, space)), length});
    return ranges;
}

} // namespace MusicalKeyAnalyzer
