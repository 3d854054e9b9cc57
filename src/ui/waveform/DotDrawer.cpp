#include "ui/waveform/DotDrawer.h"

#include "WaveformScrubber/shape/Downsampler.h"

#include <algorithm>
#include <cmath>

DotDrawer::Configuration DotDrawer::Configuration::scaled(double ratio) const
{
    return {dotRadius * ratio, spacing * ratio};
}

WaveformShape DotDrawer::shape(std::span<const float> samples, QSize size, const Configuration& configuration)
{
    WaveformShape shape;
    if (samples.empty() || size.isEmpty())
        return shape;
    // Dots on whole pixels, else each would look different.
    const int side = std::clamp(static_cast<int>(std::lround(2 * configuration.dotRadius)), 1,
                                std::min(size.width(), size.height()));
    const int pitch = side + std::max(1, static_cast<int>(std::lround(configuration.spacing)));
    const int columns = std::max(1, (size.width() - side) / pitch + 1);
    const int reach = (size.height() - side) / 2 / pitch; // dots above the middle one, and below it
    const int left = (size.width() - side - (columns - 1) * pitch) / 2;
    const double middle = (size.height() - side) / 2.0;
    // A middle between two pixels would blur every dot.
    const double top = std::floor(middle);
    shape.radius = side / 2.0;
    const std::vector<float> values = Downsampler::prepareSamples(samples, columns, UpsampleStrategy::Smooth);
    for (int column = 0; column < static_cast<int>(values.size()); ++column) {
        const int count = std::clamp(static_cast<int>(std::lround(double(values[column]) * reach)), 0, reach);
        for (int dot = -count; dot <= count; ++dot)
            shape.marks.emplace_back(left + column * pitch, top + dot * pitch, side, side);
    }
    return shape;
}
