#include "ui/waveform/BarDrawer.h"

#include "WaveformScrubber/shape/Downsampler.h"

#include <algorithm>
#include <cmath>

namespace BarDrawer {

namespace {

int pitchOf(const Configuration& configuration)
{
    return std::max(2, static_cast<int>(std::lround(configuration.barWidth + configuration.spacing)));
}

int widthOf(const Configuration& configuration)
{
    return std::clamp(static_cast<int>(std::lround(configuration.barWidth)), 1, pitchOf(configuration) - 1);
}

} // namespace

Configuration Configuration::scaled(double ratio) const
{
    return {barWidth * ratio, spacing * ratio, minBarHeight * ratio, cornerRadius * ratio};
}

int barCount(int width, const Configuration& configuration)
{
    const int pitch = pitchOf(configuration);
    const int space = pitch - widthOf(configuration);
    return std::max(1, (width + space) / pitch);
}

WaveformShape shape(std::span<const float> samples, QSize size, const Configuration& configuration)
{
    if (samples.empty() || size.isEmpty())
        return {};
    const std::vector<float> values =
        Downsampler::prepareSamples(samples, barCount(size.width(), configuration), UpsampleStrategy::Smooth);
    return bars(values, size, configuration);
}

WaveformShape bars(std::span<const float> values, QSize size, const Configuration& configuration)
{
    WaveformShape shape;
    if (size.isEmpty())
        return shape;
    shape.marks.reserve(values.size());
    const int width = std::min(widthOf(configuration), size.width());
    // What the last bar leaves over is shared by both ends.
    const int used = static_cast<int>(values.size() - 1) * pitchOf(configuration) + width;
    int left = std::max(0, (size.width() - used) / 2);
    for (const float value : values) {
        const double height =
            std::clamp(double(value) * size.height(), std::min<double>(configuration.minBarHeight, size.height()),
                       double(size.height()));
        shape.marks.emplace_back(left, (size.height() - height) / 2, width, height);
        left += pitchOf(configuration);
    }
    shape.radius = std::min(configuration.cornerRadius, width / 2.0);
    return shape;
}

} // namespace BarDrawer
