#pragma once

#include "ui/waveform/WaveformShape.h"

#include <QPointF>

#include <functional>
#include <span>

/// The upper edge of an area as points from the left border to the right one; the lower edge is its mirror image.
class Contour {
public:
    /// Leads a path from one point, where it stands, to the next.
    using Step = std::function<void(QPainterPath& path, const QPointF& from, const QPointF& to)>;

    /// \param pixelsPerSample distance of two points; below 1 counts as 1. \param minHeight of the whole area.
    Contour(std::span<const float> samples, QSize size, double pixelsPerSample, double minHeight);

    /// From left to right; empty without samples or room.
    const std::vector<QPointF>& points() const { return m_points; }
    /// The closed area; nothing without points.
    WaveformShape area(const Step& step) const;

private:
    double m_height;
    std::vector<QPointF> m_points; ///< two at least, or none
};
