#include "WaveformScrubber/shape/Upsampler.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace {

constexpr QLatin1StringView kNames[] = {QLatin1StringView("smooth"), QLatin1StringView("cosine"),
                                        QLatin1StringView("linear"), QLatin1StringView("hold"),
                                        QLatin1StringView("none")};

/// How much of the next value stands at a place between two.
double mixAt(double fraction, UpsampleStrategy strategy)
{
    switch (strategy) {
    case UpsampleStrategy::Smooth:
        return fraction * fraction * (3 - 2 * fraction);
    case UpsampleStrategy::Cosine:
        return (1 - std::cos(fraction * std::numbers::pi)) / 2;
    case UpsampleStrategy::Hold:
        return 0;
    case UpsampleStrategy::Linear:
    case UpsampleStrategy::None:
        break;
    }
    return fraction;
}

} // namespace

QLatin1StringView rawValue(UpsampleStrategy strategy)
{
    return kNames[std::size_t(strategy)];
}

std::optional<UpsampleStrategy> upsampleStrategyFromRawValue(QLatin1StringView raw)
{
    const auto* const found = std::ranges::find(kNames, raw);
    if (found == std::end(kNames))
        return std::nullopt;
    return UpsampleStrategy(found - std::begin(kNames));
}

namespace Upsampler {

std::vector<float> upsample(std::span<const float> samples, int count, UpsampleStrategy strategy)
{
    if (strategy == UpsampleStrategy::None || samples.empty() || count <= int(samples.size()))
        return {samples.begin(), samples.end()};
    const std::size_t last = samples.size() - 1;
    std::vector<float> values(std::size_t(count), 0.0F);
    for (std::size_t index = 0; index < values.size(); ++index) {
        // Multiplied first, so that the last position is exactly the last sample.
        const double position = double(index) * double(last) / double(count - 1);
        const std::size_t left = std::min(std::size_t(position), last);
        const double mix = mixAt(position - double(left), strategy);
        const double from = samples[left];
        values[index] = float(from + mix * (double(samples[std::min(left + 1, last)]) - from));
    }
    return values;
}

} // namespace Upsampler
