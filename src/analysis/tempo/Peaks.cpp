#include "analysis/tempo/Peaks.h"

#include <algorithm>

namespace BPMAnalyzer {

std::optional<float> positiveQuantile(std::span<const float> values, double share)
{
    std::vector<float> positive;
    positive.reserve(values.size());
    std::ranges::copy_if(values, std::back_inserter(positive), [](float value) { return value > 0; });
    if (positive.empty())
        return std::nullopt;
    const auto wanted = positive.begin() + static_cast<std::ptrdiff_t>(double(positive.size() - 1) * share);
    std::ranges::nth_element(positive, wanted);
    return *wanted;
}

bool isLocalMaximum(std::span<const float> values, std::size_t index)
{
    const std::size_t end = std::min(index + 3, values.size());
    for (std::size_t i = index < 2 ? 0 : index - 2; i < end; ++i) {
        if (values[i] > values[index])
            return false;
    }
    return true;
}

std::vector<int> strongestPeaks(std::span<const float> values, double share, std::size_t maximumCount)
{
    const std::optional<float> threshold = positiveQuantile(values, share);
    if (!threshold)
        return {};
    std::vector<int> peaks;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool rises = i == 0 || values[i - 1] < values[i];
        if (values[i] >= *threshold && rises && isLocalMaximum(values, i))
            peaks.push_back(static_cast<int>(i));
    }
    if (peaks.size() > maximumCount) {
        std::ranges::stable_sort(peaks, std::ranges::greater(), [&](int peak) { return values[peak]; });
        peaks.resize(maximumCount);
        std::ranges::sort(peaks);
    }
    return peaks;
}

} // namespace BPMAnalyzer
