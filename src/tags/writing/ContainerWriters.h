#pragma once

#include "core/model/CleanerFields.h"

#include <QByteArray>
#include <QString>

#include <optional>

struct AudioTags;

/// The operations of MetadataWriter for the files that are no MP3. Paths are local ones. Each builds a whole new file
/// and swaps it in; when it throws (FileError, WriteError) the source is untouched. Stateless; blocks; for workers.
namespace ContainerWriters {

/// Comments and pictures are replaced by the ten fields and the picture; without one none stays.
void writeFLAC(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path);
/// The list of INFO is made anew, and the ID3v2 chunk too where there is a picture; else it goes.
void writeWAV(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path);
/// Text chunks go; a new ID3v2 chunk holds the ten fields and the picture.
void writeAIFF(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path);
/// Title, artist, album, genre and comment alone; nothing else of the old tags stays.
void writeM4A(const AudioTags& tags, const QString& path);

/// Take the fields out and leave everything else byte for byte. \p title and \p album are set where their bit is in
/// \p fields.
void cleanFLAC(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
               const QString& path);
void cleanWAV(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
              const QString& path);
void cleanAIFF(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
               const QString& path);
void cleanM4A(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
              const QString& path);

/// Whether the bytes occur in a picture block, respectively in an ID3 chunk. An empty picture occurs nowhere.
bool containsInFLAC(const QByteArray& artwork, const QString& path);
bool containsInWAV(const QByteArray& artwork, const QString& path);
bool containsInAIFF(const QByteArray& artwork, const QString& path);

} // namespace ContainerWriters
