#pragma once

#include "ui/theme/ThemeColours.h"

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

/// The few shapes that the window is drawn with. Each leaves the painter's pen and brush as it likes.
namespace Paint {

/// Without an outline; smooth at every scale.
void roundedFill(QPainter& painter, const QRectF& rect, double radius, const QColor& colour);
/// A filled, outlined rounded rectangle; the hairline lies inside.
void card(QPainter& painter, const QRect& rect, double radius, const QColor& fill, const QColor& line);
/// A hairline inside the rectangle.
void frame(QPainter& painter, const QRect& rect, const QColor& colour);
/// The ring of keyboard focus, inside the rectangle.
void focusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& colour);
/// A check mark in the middle of the rectangle.
void checkMark(QPainter& painter, const QRect& rect, const QColor& colour);
/// The mark of a submenu, at the right end.
void chevronRight(QPainter& painter, const QRect& rect, const QColor& colour);
/// One line of text, elided at its end, vertically centred.
void line(QPainter& painter, const QRect& rect, const QString& text, const QFont& font, const QColor& colour,
          Qt::Alignment alignment = Qt::AlignLeft);
/// The same for numbers in columns: every digit takes the width of the widest, so that digits stand under digits.
/// Right-aligned. \return the left edge of what was drawn.
int number(QPainter& painter, const QRect& rect, const QString& text, const QFont& font, const QColor& colour);
/// The width that number() takes.
int numberWidth(const QString& text, const QFont& font);
/// A rounded label, as wide as its text asks for. \return its width.
int chip(QPainter& painter, const QPoint& leftCentre, const QString& text, const QFont& font, const QColor& fill,
         const QColor& textColour);

} // namespace Paint
