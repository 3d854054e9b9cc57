#pragma once

#include <cstddef>
#include <vector>

namespace MusicalKeyAnalyzer {

/// Samples of one frame, N. At 22,050 Hz it tells semitones apart from about 90 Hz upwards.
inline constexpr std::size_t kFrameSize = 8192;

/// Some samples in a row.
struct AnalysisRange {
    std::size_t start = 0;
    std::size_t length = 0;

    bool operator==(const AnalysisRange&) const = default;
};

/// Where to listen: eight ranges of 12 s, at least kFrameSize samples, spread over the file without its very beginning
/// and end, where keys are least clear; they overlap in a short file. One range, the whole, if that is not longer than
/// 12 s. \param sampleRate   in hertz, above 0.
std::vector<AnalysisRange> analysisRanges(std::size_t sampleCount, int sampleRate);

} // namespace MusicalKeyAnalyzer
