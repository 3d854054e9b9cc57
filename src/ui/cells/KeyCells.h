#pragma once

#include "ui/cells/KeyState.h"
#include "ui/cells/TrackColumns.h"

#include <QColor>
#include <QRect>

class QPainter;
class Theme;
struct ThemeColours;

/// Draws the cells that show what is known of keys. Thread: main.
namespace KeyCells {

/// From here on a result is shown as a safe one. Chosen: what is below is often its relative or a neighbour.
inline constexpr double kSafeConfidence = 0.65;

/// Draws a cell of a column about keys (KeyTexts::isKeyColumn). \param rect the cell without the gap to the next one.
void paint(QPainter& painter, const QRect& rect, const Theme& theme, TrackColumn column, const Track& track,
           const KeyState& state);
/// The bar of a confidence, 0 to 1, in the middle of \p rect.
void paintConfidence(QPainter& painter, const QRect& rect, const ThemeColours& colours, double confidence);
/// A colour laid over another with this share.
QColor mixed(const QColor& colour, const QColor& ground, double share);
/// The readable one of the theme's text and the chips' near black.
QColor textOn(const QColor& fill, const ThemeColours& colours);

} // namespace KeyCells
