#pragma once

#include "ui/waveform/WaveformShape.h"

#include <span>

/// Columns of dots, as many as the amplitude reaches. The dots of the middle are always there.
namespace DotDrawer {

/// Pixels.
struct Configuration {
    double dotRadius = 1.5;
    double spacing = 1;

    /// The same look in pixels of a device. \param ratio device pixels per pixel.
    Configuration scaled(double ratio) const;
};

/// \param samples amplitudes from 0 to 1 over the whole width. \param size of the picture; empty gives nothing, and so
/// do no samples.
WaveformShape shape(std::span<const float> samples, QSize size, const Configuration& configuration);

} // namespace DotDrawer
