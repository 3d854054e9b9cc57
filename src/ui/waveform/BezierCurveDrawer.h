#pragma once

#include "ui/waveform/WaveformShape.h"

#include <span>

/// An area between rounded lines, which pass every value level.
namespace BezierCurveDrawer {

/// Pixels, but for the curviness.
struct Configuration {
    double curviness = 0.5; ///< 0 for straight lines to 1 for steps with round corners
    double pixelsPerSample = 5;
    double minHeight = 1; ///< of silence

    /// The same look in pixels of a device. \param ratio device pixels per pixel.
    Configuration scaled(double ratio) const;
};

/// \param samples amplitudes from 0 to 1 over the whole width. \param size of the picture; empty gives nothing, and so
/// do no samples.
WaveformShape shape(std::span<const float> samples, QSize size, const Configuration& configuration);

} // namespace BezierCurveDrawer
