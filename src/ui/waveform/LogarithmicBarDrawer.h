#pragma once

#include "ui/waveform/BarDrawer.h"

/// Bars whose height is the level in decibels, so that quiet passages show their shape.
namespace LogarithmicBarDrawer {

using Configuration = BarDrawer::Configuration;

/// Levels this far below full scale and quieter have no height. Decibels; chosen: envelopes
/// are bent upwards already, and a larger range leaves no shape of them.
constexpr double kRange = 24;

/// As BarDrawer::shape().
WaveformShape shape(std::span<const float> samples, QSize size, const Configuration& configuration);

} // namespace LogarithmicBarDrawer
