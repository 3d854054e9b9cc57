#pragma once

#include <QByteArray>
#include <QDateTime>

/// Names and texts inside a Trash, by the rules of freedesktop.org, version 1.0. Names and paths are bytes
/// of the file system and need not be UTF-8.
namespace TrashName {

/// The name under which a file is kept: its own for \p number 1, "song 2.mp3" for 2 and so on. The part before the
/// extension is shortened, never inside a UTF-8 sequence, so that the info file's name fits as well.
QByteArray numbered(const QByteArray& name, int number);

/// The name of the info file of a kept file.
QByteArray infoName(const QByteArray& keptName);

/// The text of an info file. \param path where the file was: absolute, or relative to the top of its volume.
QByteArray infoText(const QByteArray& path, const QDateTime& deleted);

} // namespace TrashName
