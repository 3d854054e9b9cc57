#pragma once

#include "WaveformScrubber/shape/Upsampler.h"

/// From the values of an envelope to those of a view.
namespace Downsampler {

/// \p count values over the same time: root mean squares of equal ranges, cut by integer division. As many samples as
/// wanted give their magnitudes, fewer go to the upsampler as magnitudes; so with UpsampleStrategy::None there may be
/// fewer values than asked for. \param count at least 1.
std::vector<float> downsample(std::span<const float> samples, int count, UpsampleStrategy strategy);

/// downsample() for any count: empty for one below 1 and without samples.
std::vector<float> prepareSamples(std::span<const float> samples, int count, UpsampleStrategy strategy);

} // namespace Downsampler
