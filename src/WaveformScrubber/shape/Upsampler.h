#pragma once

#include <QLatin1StringView>

#include <optional>
#include <span>
#include <vector>

/// How values between two known ones are made, in the order of choice lists.
enum class UpsampleStrategy {
    Smooth, ///< leaves and reaches the known values level, by a cubic
    Cosine, ///< the same by half a cosine
    Linear,
    Hold, ///< steps
    None, ///< no values are made
};

/// "smooth", "cosine", "linear", "hold" or "none".
QLatin1StringView rawValue(UpsampleStrategy strategy);
/// Nothing for an unknown value.
std::optional<UpsampleStrategy> upsampleStrategyFromRawValue(QLatin1StringView raw);

namespace Upsampler {

/// \p count values over the same time. With at least as many samples as that, without samples and with
/// UpsampleStrategy::None the samples as they are.
std::vector<float> upsample(std::span<const float> samples, int count, UpsampleStrategy strategy);

} // namespace Upsampler
