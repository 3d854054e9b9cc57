#pragma once

#include "core/model/CleanerFields.h"

#include <QByteArray>
#include <QUrl>

#include <optional>

struct AudioTags;

/// Changes the tags inside audio files. Each operation builds a whole new file and swaps it in; when it throws
/// (FileError, WriteError) the source is untouched. Stateless; blocks; for workers. Callers serialise operations on one
/// file.
namespace MetadataWriter {

/// Writes the ten fields. What else the old tags held, pictures included, is gone afterwards in MP3 and where the
/// container's writer says so. \param removeArtwork has no effect.
void write(const AudioTags& tags, bool removeArtwork, const QUrl& url);
/// Writes the ten fields and the picture, and looks whether the picture is in the file then.
void assignArtwork(const QByteArray& artwork, const AudioTags& tags, const QUrl& url);
/// Takes fields out and leaves everything else byte for byte. \param title, album what is set where their bit is in
/// \p fields.
void clean(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
           const QUrl& url);
/// A whole ID3v2.3 tag, or nothing if every field is empty and there is no picture.
QByteArray id3Tag(const AudioTags& tags, const std::optional<QByteArray>& artwork);
/// Whether the bytes occur where the file's pictures are.
bool containsArtworkBytes(const QByteArray& artwork, const QUrl& url);

} // namespace MetadataWriter
