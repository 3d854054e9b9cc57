#pragma once

#include "ui/context/WindowContext.h"

class QPainter;
class QRect;
class Track;

namespace CoverPaint {

/// Draws a track's cover in a square with round corners, or the note that stands for a missing one. \param track may be
/// null.
void paint(QPainter& painter, const WindowContext& context, const QRect& square, int radius, const Track* track);

} // namespace CoverPaint
