#pragma once

#include "core/model/MusicalKey.h"

#include <QPainterPath>
#include <QPointF>

#include <optional>

/// Where the keys stand on the Camelot wheel: twelve at the top, numbers clockwise, majors outside, minors inside.
class KeyWheelGeometry {
public:
    /// A value. \param side of the square that holds the wheel, whose top left corner is the origin.
    explicit KeyWheelGeometry(double side);

    /// Of the wheel, in the coordinates of its square.
    QPointF centre() const { return m_centre; }
    /// Of the free disc in the middle.
    double innerRadius() const;
    /// The segment of a key, without a gap to its neighbours.
    QPainterPath segment(const MusicalKey& key) const;
    /// Where the code of a key is written.
    QPointF labelCentre(const MusicalKey& key) const;
    /// The key at a point; nothing in the middle and outside. A point on the line between two rings belongs to the
    /// outer one.
    std::optional<MusicalKey> keyAt(const QPointF& point) const;

private:
    struct Ring {
        double inner = 0;
        double outer = 0;
    };
    /// The minor keys lie inside, the major ones outside.
    Ring ring(MusicalKeyMode mode) const;

    QPointF m_centre;
    double m_radius;
};
