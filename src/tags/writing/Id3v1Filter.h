#pragma once

#include "core/model/CleanerFields.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Empties fields of an ID3v1 tag in their places.
namespace Id3v1Filter {

/// Bytes of every ID3v1 tag.
constexpr qsizetype kTagSize = 128;

/// \param tag kTagSize bytes that begin with "TAG". Picture, album artist, tempo, key and artist are not touched.
/// \param title becomes the title, in UTF-8 cut at 30 bytes, where the title is among the fields.
QByteArray filtered(QByteArrayView tag, CleanerFields fields, const std::optional<QString>& title);

} // namespace Id3v1Filter
