#pragma once

class QWheelEvent;

/// Turns the wheel into whole steps. A notch is a step; what finer wheels and touchpads give is gathered until it makes
/// one. A change of direction drops what was gathered.
class WheelSteps {
public:
    /// \param pixelsPerStep what a touchpad has to move for a step; an event gives one step at most, the rest is kept.
    explicit WheelSteps(int pixelsPerStep)
        : m_pixelsPerStep(pixelsPerStep)
    {
    }

    /// \return steps, positive for turning away from the user whatever the desktop calls natural.
    int consume(const QWheelEvent& event);
    /// What a touchpad gave, positive for away from the user; 0 for a wheel.
    static int pixels(const QWheelEvent& event);

private:
    int take(int delta, int perStep, int limit);

    int m_pixelsPerStep;
    int m_gathered = 0;
    bool m_isPrecise = false; ///< whether pixels or angles were gathered
};
