#include "ui/waveform/Contour.h"

#include "WaveformScrubber/shape/Downsampler.h"

#include <cmath>

Contour::Contour(std::span<const float> samples, QSize size, double pixelsPerSample, double minHeight)
    : m_height(size.height())
{
    if (samples.empty() || size.isEmpty())
        return;
    const int count = std::max(2, static_cast<int>(std::lround(size.width() / std::max(1.0, pixelsPerSample))) + 1);
    std::vector<float> values = Downsampler::prepareSamples(samples, count, UpsampleStrategy::Smooth);
    if (values.size() == 1)
        values.push_back(values.front());
    const double distance = size.width() / double(values.size() - 1);
    const double least = std::min(minHeight, m_height) / 2;
    for (size_t i = 0; i < values.size(); ++i) {
        const double reach = std::clamp(double(values[i]) * m_height / 2, least, m_height / 2);
        m_points.emplace_back(double(i) * distance, m_height / 2 - reach);
    }
}

WaveformShape Contour::area(const Step& step) const
{
    WaveformShape shape;
    if (m_points.empty())
        return shape;
    const auto mirrored = [this](const QPointF& point) { return QPointF(point.x(), m_height - point.y()); };
    QPainterPath& path = shape.area;
    path.reserve(static_cast<int>(m_points.size()) * 6 + 4);
    path.moveTo(m_points.front());
    for (size_t i = 1; i < m_points.size(); ++i)
        step(path, m_points[i - 1], m_points[i]);
    path.lineTo(mirrored(m_points.back()));
    for (size_t i = m_points.size() - 1; i > 0; --i)
        step(path, mirrored(m_points[i]), mirrored(m_points[i - 1]));
    path.closeSubpath();
    return shape;
}
