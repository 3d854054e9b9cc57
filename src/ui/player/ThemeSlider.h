#pragma once

#include <QAbstractSlider>

class Theme;

/// A slider drawn as a thin groove with a round knob; the base of volume and position. Takes the keyboard focus by Tab
/// alone, so that a click does not take it from the list. Assistive technology reads its value in words.
class ThemeSlider : public QAbstractSlider {
    Q_OBJECT

public:
    /// \param theme outlives the slider
    explicit ThemeSlider(const Theme& theme, QWidget* parent = nullptr);

    /// The value as it is said, e.g. "80 %".
    virtual QString spokenValue() const = 0;

protected:
    /// The part of the whole, 0 to 1, that a place stands for.
    double fractionAt(const QPointF& position) const;
    /// Where a fraction stands along the groove, in pixels from the left, or from the top of an upright slider.
    double placeOf(double fraction) const;
    /// \param ground of the part that is not filled.
    void paintGroove(QPainter& painter, double fraction, const QColor& filled, const QColor& ground) const;
    /// Draws the knob at a part of the whole, 0 to 1.
    void paintKnob(QPainter& painter, double fraction) const;
    /// Draws the ring of the keyboard's focus, where the slider has it.
    void paintFocus(QPainter& painter) const;
    const Theme& theme() const { return m_theme; }

private:
    const Theme& m_theme;
};
