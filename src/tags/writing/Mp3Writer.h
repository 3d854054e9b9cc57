#pragma once

#include "core/model/CleanerFields.h"

#include <QByteArray>
#include <QString>

#include <optional>

struct AudioTags;

/// The operations of MetadataWriter for MP3 files. Paths are local ones.
namespace Mp3Writer {

/// Throws the tags in front of and behind the sound away and writes one ID3v2.3 tag. A new file that could not take the
/// old one's place stays beside it, under its temporary name.
void write(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path);
/// Takes fields out of all tags, each of which stays in its own version, and leaves everything else byte for byte.
/// \p title and \p album go into the first ID3v2 tag, a new one if need be, where their bit is in \p fields.
void clean(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
           const QString& path);
/// Whether the bytes occur anywhere in the first ID3v2 tag. An empty picture occurs nowhere.
bool contains(const QByteArray& artwork, const QString& path);

} // namespace Mp3Writer
