#pragma once

#include "core/model/CleanerFields.h"

#include "tags/writing/TrailerParts.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// The ID3v1 and APEv2 tags behind the sound of an MP3 file. Errors: FileError (fileReadCorruptFile).
namespace Mp3Trailer {

using TrailerParts::Read;

/// The offset behind which only such tags lie, in any number and order. Other trailers count as sound, and so does an
/// APEv2 block whose flags call it a header: what it belongs to would have to stand behind it.
/// \param lowerBound where the sound begins; nothing before it is looked at.
/// \param path for errors.
qint64 audioEnd(const Read& read, qint64 fileSize, qint64 lowerBound, const QString& path);

/// The trailer without the fields: nothing, an APEv2 tag, an ID3v1 tag, or the two in this order; others are errors.
/// \param title what ID3v1 gets as its title where the title is among the fields.
/// \param path for errors.
QByteArray filtered(QByteArrayView trailer, CleanerFields fields, const std::optional<QString>& title,
                    const QString& path);

} // namespace Mp3Trailer
