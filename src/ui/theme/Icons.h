#pragma once

#include "core/model/WorkspaceStatus.h"

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QString>

/// The window's pictograms: one family of line drawings, tinted when they are drawn. Thread: main.
namespace Icons {

/// The drawing before a message of the status line.
QString of(StatusIcon icon);

/// Draws an icon, as large as the rectangle, sharp on every scale. \param name of the icon set.
void paint(QPainter& painter, const QRect& rect, const QString& name, const QColor& colour);
/// The same for controls that take a QIcon. Disabled states are drawn by the control. \param selected colour on a
/// selected row, if it is another one.
QIcon icon(const QString& name, const QColor& colour, const QColor& selected = {});
/// The program's own mark, in its own colours.
void paintMark(QPainter& painter, const QRect& rect);
/// Of the window and the task bar.
QIcon applicationIcon();

} // namespace Icons
