#pragma once

#include <array>

namespace BPMAnalyzer {

/// Which bins of a spectrum belong to which of 24 bands of equal width on the mel scale, from 35 Hz to 5 kHz.
struct MelMap {
    static constexpr int kBandCount = 24;

    /// \param frameSize   samples of a frame. \param sampleRate   Hz.
    MelMap(int frameSize, double sampleRate);

    /// The bins of one band: first to end - 1; none when both are equal.
    struct Band {
        int first = 0;
        int end = 0;
    };
    /// In order, without gaps: a bin on a shared edge belongs to the higher band.
    std::array<Band, kBandCount> bands;
};

} // namespace BPMAnalyzer
