#include "tempo/TempoSignals.h"

#include "analysis/tempo/AnalysisConstants.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace TempoSignals {

std::vector<float> clicks(double bpm, double seconds)
{
    constexpr std::size_t kLength = 220; // 20 ms
    std::vector<float> samples(static_cast<std::size_t>(seconds * BPMAnalyzer::kSampleRate));
    const std::vector<float> burst = noise(kLength);
    const double beat = 60.0 * BPMAnalyzer::kSampleRate / bpm;
    for (int i = 0; std::lround(i * beat) + long(kLength) < long(samples.size()); ++i)
        std::ranges::copy(burst, samples.begin() + std::lround(i * beat));
    return samples;
}

std::vector<float> noise(std::size_t count, float level, unsigned seed)
{
    std::minstd_rand random(seed);
    std::uniform_real_distribution<float> values(-level, level);
    std::vector<float> samples(count);
    std::ranges::generate(samples, [&] { return values(random); });
    return samples;
}

BPMAnalyzer::Pace freePace()
{
    return {.stop = {}, .budget = BPMAnalyzer::CooperativeDSPBudget(false, WorkerClock::system())};
}

WorkerClock CountedClock::clock()
{
    return {.now =
                [this] {
                    ++looks;
                    if (onLook)
                        onLook();
                    return now += step;
                },
            .wait =
                [this](async::Duration duration, int) {
                    sleeps.push_back(duration);
                    now += duration;
                }};
}

} // namespace TempoSignals
