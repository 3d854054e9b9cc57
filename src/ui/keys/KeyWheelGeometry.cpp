#include "ui/keys/KeyWheelGeometry.h"

#include <QtMath>

#include <cmath>

namespace {

// Shares of the radius: the codes of both rings have to find room.
constexpr double kMiddle = 0.37;
constexpr double kBoundary = 0.655;
constexpr int kKeys = 12;
constexpr double kSpan = 360.0 / kKeys; // degrees

/// Degrees clockwise from the top.
double angleOf(const MusicalKey& key)
{
    return key.camelotNumber() % kKeys * kSpan;
}

} // namespace

KeyWheelGeometry::KeyWheelGeometry(double side)
    : m_centre(side / 2, side / 2)
    , m_radius(side / 2 - 2) // the outline of a segment needs its room
{
}

double KeyWheelGeometry::innerRadius() const
{
    return m_radius * kMiddle;
}

KeyWheelGeometry::Ring KeyWheelGeometry::ring(MusicalKeyMode mode) const
{
    if (mode == MusicalKeyMode::Minor)
        return {m_radius * kMiddle, m_radius * kBoundary};
    return {m_radius * kBoundary, m_radius};
}

QPainterPath KeyWheelGeometry::segment(const MusicalKey& key) const
{
    const auto square = [this](double radius) {
        return QRectF(m_centre.x() - radius, m_centre.y() - radius, 2 * radius, 2 * radius);
    };
    const Ring ring = this->ring(key.mode);
    const double start = 90 - angleOf(key) + kSpan / 2; // the toolkit counts from the right, against the clock
    QPainterPath path;
    path.arcMoveTo(square(ring.outer), start);
    path.arcTo(square(ring.outer), start, -kSpan);
    path.arcTo(square(ring.inner), start - kSpan, kSpan);
    path.closeSubpath();
    return path;
}

QPointF KeyWheelGeometry::labelCentre(const MusicalKey& key) const
{
    const Ring ring = this->ring(key.mode);
    const double radius = (ring.inner + ring.outer) / 2;
    const double angle = qDegreesToRadians(angleOf(key));
    return m_centre + QPointF(radius * std::sin(angle), -radius * std::cos(angle));
}

std::optional<MusicalKey> KeyWheelGeometry::keyAt(const QPointF& point) const
{
    const QPointF away = point - m_centre;
    const double distance = std::hypot(away.x(), away.y());
    if (distance < innerRadius() || distance > m_radius)
        return std::nullopt;
    const bool isMinor = distance < ring(MusicalKeyMode::Minor).outer;
    const double angle = qRadiansToDegrees(std::atan2(away.x(), -away.y()));
    const int place = (static_cast<int>(std::lround(angle / kSpan)) + kKeys) % kKeys;
    const int number = place == 0 ? kKeys : place;
    return MusicalKey::fromCamelotCode(QString::number(number) + QChar(isMinor ? u'A' : u'B'));
}
