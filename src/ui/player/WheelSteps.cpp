#include "ui/player/WheelSteps.h"

#include <QWheelEvent>

namespace {

constexpr int kNotch = 120; // eighths of a degree times 15, the toolkit's notch

int longer(const QPoint& delta)
{
    return std::abs(delta.y()) >= std::abs(delta.x()) ? delta.y() : -delta.x();
}

} // namespace

int WheelSteps::pixels(const QWheelEvent& event)
{
    return event.inverted() ? -longer(event.pixelDelta()) : longer(event.pixelDelta());
}

int WheelSteps::consume(const QWheelEvent& event)
{
    const bool isPrecise = !event.pixelDelta().isNull();
    if (isPrecise != m_isPrecise)
        m_gathered = 0;
    m_isPrecise = isPrecise;
    const int sign = event.inverted() ? -1 : 1;
    if (isPrecise)
        return take(pixels(event), m_pixelsPerStep, 1);
    const int angle = sign * longer(event.angleDelta());
    return take(angle, kNotch, std::max(1, std::abs(angle) / kNotch));
}

int WheelSteps::take(int delta, int perStep, int limit)
{
    if ((delta > 0 && m_gathered < 0) || (delta < 0 && m_gathered > 0))
        m_gathered = 0;
    m_gathered += delta;
    const int steps = std::clamp(m_gathered / perStep, -limit, limit);
    m_gathered -= steps * perStep;
    return steps;
}
