#pragma once

#include "ui/theme/ThemeColours.h"

#include <QProxyStyle>

/// Fusion with the window's own buttons, menus, scroll bars, tooltips and focus ring. Owned by the application.
class VelmoraStyle : public QProxyStyle {
    Q_OBJECT

public:
    VelmoraStyle();

    /// Drawn with from the next repaint on.
    void setColours(const ThemeColours& colours) { m_colours = colours; }
    /// Takes the desktop's frame and shadow off menus, which draw their own.
    void polish(QWidget* widget) override;
    using QProxyStyle::polish;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;

private:
    void drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter) const;
    void drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const;

    ThemeColours m_colours;
};
