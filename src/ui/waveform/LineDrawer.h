#pragma once

#include "ui/waveform/WaveformShape.h"

#include <span>

/// An area between straight lines.
namespace LineDrawer {

/// Pixels.
struct Configuration {
    double pixelsPerSample = 2;
    double minHeight = 1; ///< of silence

    /// The same look in pixels of a device. \param ratio device pixels per pixel.
    Configuration scaled(double ratio) const;
};

/// \param samples amplitudes from 0 to 1 over the whole width. \param size of the picture; empty gives nothing, and so
/// do no samples.
WaveformShape shape(std::span<const float> samples, QSize size, const Configuration& configuration);

} // namespace LineDrawer
