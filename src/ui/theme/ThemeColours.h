#pragma once

#include <QColor>

/// Dark or light.
enum class Appearance { Dark, Light };

/// The colours of the window by what they are for.
struct ThemeColours {
    QColor background; ///< lists
    QColor side;       ///< sidebar, status line
    QColor surface;    ///< player bar, panels
    QColor raised;     ///< buttons, menus, fields
    QColor line;       ///< hairlines
    QColor text;
    QColor text2;      ///< secondary
    QColor text3;      ///< hints
    QColor accent;     ///< focus, selection, main button
    QColor accentText; ///< on the accent
    QColor heart;
    /// The tones of messages.
    QColor ok;
    QColor warning;
    QColor selection; ///< tint laid over what is selected
    QColor hover;     ///< tint laid over what the pointer is on
    QColor pressed;
    QColor groove; ///< of sliders, the part that is not filled
    QColor shadow;
    QColor coverVeil;  ///< over a cover that shows a button
    QColor coverGlyph; ///< on the veil

    /// Lives as long as the program.
    static const ThemeColours& of(Appearance appearance);
};
