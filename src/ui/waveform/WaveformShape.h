#pragma once

#include <QPainterPath>
#include <QRectF>
#include <QSize>

#include <vector>

/// What a drawer makes of samples: marks to be filled one by one and an area to be filled as a whole, either of which
/// may be empty. In pixels of the device, mirrored around the middle of the height.
struct WaveformShape {
    std::vector<QRectF> marks; ///< from left to right, never overlapping; within one column from top to bottom
    double radius = 0;         ///< of the marks' corners
    QPainterPath area;

    /// Whether there is nothing to be filled.
    bool isEmpty() const { return marks.empty() && area.isEmpty(); }
};
