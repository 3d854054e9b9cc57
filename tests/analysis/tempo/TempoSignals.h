#pragma once

#include "analysis/tempo/Pace.h"

#include <functional>
#include <vector>

/// Sounds at 11,025 Hz and clocks for the tests of the tempo analysis.
namespace TempoSignals {

/// Short bursts of noise over silence, one a beat.
std::vector<float> clicks(double bpm, double seconds);
/// White noise between -level and level.
std::vector<float> noise(std::size_t count, float level = 1, unsigned seed = 7);

/// A pace that never rests and never stops.
BPMAnalyzer::Pace freePace();

/// Time that passes by \p step with each look at it, and counts looks and sleeps.
struct CountedClock {
    async::Duration step{};
    async::Duration now{};
    int looks = 0;
    std::vector<async::Duration> sleeps = {};
    std::function<void()> onLook = {};

    /// Refers to this object.
    WorkerClock clock();
};

} // namespace TempoSignals
