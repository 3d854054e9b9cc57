#pragma once

#include <QByteArray>
#include <QImage>
#include <QUrl>

#include <optional>
#include <variant>

class QMimeData;

/// Where a picture for covers comes from: the bytes of a picture file, the file itself, or bare pixels.
using PictureSource = std::variant<QByteArray, QUrl, QImage>;

namespace PictureSources {

/// Whether a drag or the clipboard holds a picture. Looks at names only, so that a drag may ask at every move.
bool hasPicture(const QMimeData& data);
/// The picture of a drag or the clipboard: the first picture file, else the bytes of a PNG or JPEG, else the pixels.
/// Thread: main; the pixels are decoded here, files are not read.
std::optional<PictureSource> pictureOf(const QMimeData& data);
/// The bytes of a picture file: of a file what is in it, up to one byte more than a cover may have, so that what is too
/// large shows as that; pixels as PNG. Empty if the file cannot be read. Blocks. Thread: any.
QByteArray bytesOf(const PictureSource& source);

} // namespace PictureSources
