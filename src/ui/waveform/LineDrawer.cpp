#include "ui/waveform/LineDrawer.h"

#include "ui/waveform/Contour.h"

LineDrawer::Configuration LineDrawer::Configuration::scaled(double ratio) const
{
    return {pixelsPerSample * ratio, minHeight * ratio};
}

WaveformShape LineDrawer::shape(std::span<const float> samples, QSize size, const Configuration& configuration)
{
    const Contour contour(samples, size, configuration.pixelsPerSample, configuration.minHeight);
    return contour.area([](QPainterPath& path, const QPointF&, const QPointF& to) { path.lineTo(to); });
}
