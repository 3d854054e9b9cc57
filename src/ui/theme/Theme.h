#pragma once

#include "ui/theme/Metrics.h"
#include "ui/theme/ThemeColours.h"

#include <QFont>
#include <QObject>
#include <QPalette>

#include <array>

/// What a text is, which decides its font.
enum class TextRole { Body, BodyStrong, Secondary, SecondaryStrong, ColumnHead, Title, Brand, Chip };
/// Entries of TextRole.
inline constexpr size_t kTextRoleCount = 8;

/// Colours and fonts of the window; everything that is drawn asks here. One object per window. Thread: main.
class Theme : public QObject {
    Q_OBJECT

public:
    /// Takes the font Inter where it is installed, else the desktop's. The application is not touched before
    /// install().
    explicit Theme(Appearance appearance, QObject* parent = nullptr);

    Appearance appearance() const { return m_appearance; }
    /// Switches colours at run time, for the application too, and emits changed(); nothing happens for the present
    /// one.
    void setAppearance(Appearance appearance);
    const ThemeColours& colours() const { return ThemeColours::of(m_appearance); }
    /// Sizes in pixels; the same in both appearances.
    const QFont& font(TextRole role) const { return m_fonts[static_cast<size_t>(role)]; }
    /// For the toolkit's own controls.
    QPalette palette() const;

    /// Gives the application the style, the font and the palette of this theme.
    void install();

Q_SIGNALS:
    /// Colours differ from now on: repaint.
    void changed();

private:
    Appearance m_appearance;
    std::array<QFont, kTextRoleCount> m_fonts;
};
