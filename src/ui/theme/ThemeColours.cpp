#include "ui/theme/ThemeColours.h"

namespace {

QColor tint(QColor colour, double share)
{
    colour.setAlphaF(static_cast<float>(share));
    return colour;
}

ThemeColours dark()
{
    ThemeColours c;
    c.background = QColor(0x131418);
    c.side = QColor(0x17191E);
    c.surface = QColor(0x1B1D23);
    c.raised = QColor(0x23262E);
    c.line = QColor(0x2A2D36);
    c.text = QColor(0xECEEF2);
    c.text2 = QColor(0xA3A9B5);
    c.text3 = QColor(0x6F7683);
    c.accent = QColor(0x5B8CFF);
    c.accentText = QColor(0xFFFFFF);
    c.heart = QColor(0xFF5C7A);
    c.ok = QColor(0x3ECF8E);
    c.warning = QColor(0xF5A524);
    c.selection = tint(c.accent, 0.16);
    c.hover = tint(Qt::white, 0.035);
    c.pressed = tint(Qt::white, 0.09);
    c.groove = QColor(0x3A3E49);
    c.coverVeil = tint(Qt::black, 0.48);
    c.coverGlyph = QColor(0xFFFFFF);
    c.shadow = tint(Qt::black, 0.5);
    return c;
}

ThemeColours light()
{
    ThemeColours c;
    c.background = QColor(0xF6F7F9);
    c.side = QColor(0xEEF0F3);
    c.surface = QColor(0xFFFFFF);
    c.raised = QColor(0xFFFFFF);
    c.line = QColor(0xE1E4EA);
    c.text = QColor(0x16181D);
    c.text2 = QColor(0x5A6270);
    c.text3 = QColor(0x8D95A3);
    c.accent = QColor(0x2F6BFF);
    c.accentText = QColor(0xFFFFFF);
    c.heart = QColor(0xE5395B);
    c.ok = QColor(0x168A57);
    c.warning = QColor(0xB66A00);
    c.selection = tint(c.accent, 0.11);
    c.hover = tint(Qt::black, 0.03);
    c.pressed = tint(Qt::black, 0.07);
    c.groove = QColor(0xD3D8E0);
    c.coverVeil = tint(Qt::black, 0.48);
    c.coverGlyph = QColor(0xFFFFFF);
    c.shadow = tint(Qt::black, 0.18);
    return c;
}

} // namespace

const ThemeColours& ThemeColours::of(Appearance appearance)
{
    static const ThemeColours kDark = dark();
    static const ThemeColours kLight = light();
    return appearance == Appearance::Dark ? kDark : kLight;
}
