#include "WaveformScrubber/shape/EnvelopeCurve.h"

#include <algorithm>
#include <cmath>

namespace EnvelopeCurve {

namespace {

constexpr float kSilence = 0.000001F;
// Chosen by eye: a few loud moments cut at 1 leave the rest its height; mostly loudness with a touch of the peaks, and
// the power lifts what is quiet. On disk: a change needs a new format version.
constexpr double kRMSFraction = 0.97;
constexpr double kPeakFraction = 0.99;
constexpr double kRMSWeight = 0.88;
constexpr double kPeakWeight = 0.12;
constexpr double kPower = 0.78;

double relative(float value, float reference)
{
    return std::min(1.0, double(value) / double(std::max(reference, kSilence)));
}

} // namespace

float percentile(std::span<const float> values, double fraction)
{
    std::vector<float> audible;
    audible.reserve(values.size());
    std::ranges::copy_if(values, std::back_inserter(audible), [](float value) { return value > kSilence; });
    if (audible.empty())
        return 1;
    const auto last = std::ptrdiff_t(audible.size()) - 1;
    const auto index = std::clamp<std::ptrdiff_t>(std::lround(fraction * double(last)), 0, last);
    std::nth_element(audible.begin(), audible.begin() + index, audible.end());
    return audible[std::size_t(index)];
}

std::vector<float> shaped(std::span<const float> rms, std::span<const float> peak)
{
    const float rmsReference = percentile(rms, kRMSFraction);
    const float peakReference = percentile(peak, kPeakFraction);
    std::vector<float> values(rms.size());
    for (std::size_t index = 0; index < values.size(); ++index) {
        const double level =
            kRMSWeight * relative(rms[index], rmsReference) + kPeakWeight * relative(peak[index], peakReference);
        values[index] = float(std::pow(level, kPower));
    }
    return values;
}

} // namespace EnvelopeCurve
