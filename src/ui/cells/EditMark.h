#pragma once

#include "core/model/TagField.h"

#include <QString>

class QPainter;
class QRect;
class Track;
struct ThemeColours;

/// How a row says that it was edited and its file does not have it yet: a dot, and words. Thread: main.
namespace EditMark {

/// What a field is called, localised.
QString fieldName(TagField field);
/// "Не записано в файл: Жанр, Альбом", localised; empty where the file has everything.
QString text(const Track& track);
/// Draws the dot at the right end of a line of text. \return what is left of the line.
QRect paint(QPainter& painter, const QRect& line, const ThemeColours& colours);

} // namespace EditMark
