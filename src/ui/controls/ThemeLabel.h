#pragma once

#include "ui/theme/Theme.h"

#include <QWidget>

/// A text in one of the theme's fonts and colours: one line, elided with the full text as tooltip, or wrapped and
/// centred.
class ThemeLabel : public QWidget {
    Q_OBJECT

public:
    using ColourOf = QColor ThemeColours::*;

    /// \param theme outlives the label. \param role decides its font, for good.
    ThemeLabel(const Theme& theme, TextRole role, ColourOf colour, QWidget* parent = nullptr);

    /// The text as it is shown, localised already; a screen reader says it too.
    void setText(const QString& text);
    const QString& text() const { return m_text; }
    /// A member of ThemeColours, so that it follows a change of the theme.
    void setColour(ColourOf colour);
    /// Wraps at this width, in pixels, and centres; 0 goes back to one line.
    void setWrapped(int width);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    const Theme& m_theme;
    TextRole m_role;
    ColourOf m_colour;
    QString m_text;
    int m_wrapWidth = 0;
};
