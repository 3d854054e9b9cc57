#pragma once

#include "core/model/CleanerFields.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Takes frames out of an ID3v2 tag that otherwise stays as it is, in its own version.
namespace Id3v2Filter {

/// \param tag one whole tag and nothing behind it.
/// \param title, album non-empty ones are added as frames where their bit is in \p fields.
/// \param path for FileError alone: fileReadCorruptFile for a broken tag, fileWriteOutOfSpace for a new one that its
/// size field cannot express. A tag with flags or of another version than 2.2 to 2.4 is WriteError (rewriteFailed,
/// "ID3"). \return the tag without the frames and without padding.
QByteArray filtered(QByteArrayView tag, CleanerFields fields, const std::optional<QString>& title,
                    const std::optional<QString>& album, const QString& path);

} // namespace Id3v2Filter
