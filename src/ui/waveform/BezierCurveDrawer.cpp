#include "ui/waveform/BezierCurveDrawer.h"

#include "ui/waveform/Contour.h"

BezierCurveDrawer::Configuration BezierCurveDrawer::Configuration::scaled(double ratio) const
{
    return {curviness, pixelsPerSample * ratio, minHeight * ratio};
}

WaveformShape BezierCurveDrawer::shape(std::span<const float> samples, QSize size, const Configuration& configuration)
{
    const Contour contour(samples, size, configuration.pixelsPerSample, configuration.minHeight);
    const double curviness = std::clamp(configuration.curviness, 0.0, 1.0);
    return contour.area([curviness](QPainterPath& path, const QPointF& from, const QPointF& to) {
        const double reach = (to.x() - from.x()) * curviness;
        path.cubicTo(from.x() + reach, from.y(), to.x() - reach, to.y(), to.x(), to.y());
    });
}
