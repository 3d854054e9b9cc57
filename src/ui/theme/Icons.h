#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QString>

/// The window's pictograms: one family of line drawings, tinted when they are drawn. Thread: main.
namespace Icons {

/// The drawing that a symbol name of a status message stands for ("heart.fill" …); "info" for an unknown symbol.
QString nameForSymbol(const QString& symbol);

/// Draws an icon, as large as the rectangle, sharp on every scale.
void paint(QPainter& painter, const QRect& rect, const QString& name, const QColor& colour);
/// The same for controls that take a QIcon. Disabled states are drawn by the control. \param selected colour on a
/// selected row, if it is another one.
QIcon icon(const QString& name, const QColor& colour, const QColor& selected = {});
/// The program's own mark, in its own colours.
void paintMark(QPainter& painter, const QRect& rect);
QIcon applicationIcon();

} // namespace Icons
