#pragma once

#include <span>
#include <vector>

/// From measured levels to what looks right: levels relative to the loud part of the same file, bent upwards.
namespace EnvelopeCurve {

/// The value that a share of all values above silence (0.000001) does not exceed.
/// \param fraction from 0 to 1; the value at the rounded index of the sorted list is taken.
/// \return         1 when all is silence.
float percentile(std::span<const float> values, double fraction);

/// One value from 0 to 1 per bucket.
/// \param rms  root mean squares, at least 0. \param peak largest magnitudes, as many.
std::vector<float> shaped(std::span<const float> rms, std::span<const float> peak);

} // namespace EnvelopeCurve
