#include "analysis/tempo/NormalizedOnset.h"

#include "analysis/tempo/Peaks.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, end of section 2. Shares from 0 to 1.
constexpr double kRadiusSeconds = 0.35;
constexpr float kMeanShare = 0.82F;
constexpr double kScaleQuantile = 0.72;
constexpr float kCeiling = 8;
constexpr float kOffPeakShare = 0.28F;

/// What stands out of the mean of the neighbourhood.
std::vector<float> aboveLocalMean(const std::vector<float>& values, int radius)
{
    const int count = static_cast<int>(values.size());
    std::vector<double> sums(values.size() + 1); // of all values before
    for (int i = 0; i < count; ++i)
        sums[i + 1] = sums[i] + double(values[i]);
    std::vector<float> result(values.size());
    for (int i = 0; i < count; ++i) {
        const int first = std::max(i - radius, 0);
        const int end = std::min(i + radius + 1, count);
        const float mean = static_cast<float>((sums[end] - sums[first]) / (end - first));
        result[i] = std::max(0.0F, values[i] - kMeanShare * mean);
    }
    return result;
}

std::vector<float> smoothed(const std::vector<float>& values)
{
    const std::size_t last = values.size() - 1;
    std::vector<float> result(values.size());
    result[0] = (values[0] + values[1]) / 2;
    for (std::size_t i = 1; i < last; ++i)
        result[i] = (values[i - 1] + values[i] + values[i + 1]) / 3;
    result[last] = (values[last - 1] + values[last]) / 2;
    return result;
}

} // namespace

std::vector<float> normalizedOnset(std::vector<float> values, double rate)
{
    if (values.size() < 5)
        return values;
    const int radius = std::max(static_cast<int>(std::lround(rate * kRadiusSeconds)), 3);
    std::vector<float> smooth = smoothed(aboveLocalMean(values, radius));
    const std::optional<float> scale = positiveQuantile(smooth, kScaleQuantile);
    if (!scale)
        return smooth;
    const float divisor = std::max(*scale, 1e-6F);
    for (std::size_t i = 0; i < smooth.size(); ++i) {
        const float value = std::min(smooth[i] / divisor, kCeiling);
        values[i] = isLocalMaximum(smooth, i) ? value : value * kOffPeakShare;
    }
    return values;
}

} // namespace BPMAnalyzer
