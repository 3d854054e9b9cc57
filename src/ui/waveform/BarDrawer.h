#pragma once

#include "ui/waveform/WaveformShape.h"

#include <span>

/// Upright bars. Their sides stand on whole pixels, so that all look alike; their tips need not.
namespace BarDrawer {

/// Pixels; fractions are rounded so that a bar and a space have at least one each.
struct Configuration {
    double barWidth = 2;
    double spacing = 1;
    double minBarHeight = 2; ///< of silence
    double cornerRadius = 1;

    /// The same look in pixels of a device. \param ratio device pixels per pixel.
    Configuration scaled(double ratio) const;
};

/// Bars that fit into the width; at least one.
int barCount(int width, const Configuration& configuration);
/// \param samples amplitudes from 0 to 1 over the whole width. \param size of the picture; empty gives nothing, and so
/// do no samples.
WaveformShape shape(std::span<const float> samples, QSize size, const Configuration& configuration);
/// The same for as many values as barCount() gives: one bar each.
WaveformShape bars(std::span<const float> values, QSize size, const Configuration& configuration);

} // namespace BarDrawer
