#pragma once

#include "core/model/TagField.h"

#include <QByteArray>
#include <QUrl>

/// The careful way to save tags: only what is said changes, all else that the file's tags hold stays. Each operation
/// builds a whole new file and swaps it in; when it throws (FileError, WriteError) the source is untouched. Stateless;
/// blocks; for workers. Callers serialise operations on one file. After each operation a read of the file gives the
/// values that were written.
namespace KeepingWriter {

/// Replaces the frames, comments, items or chunks of the chosen fields; an empty text takes the field out. Pictures,
/// other frames and the fields that were not chosen stay as they are.
void write(const AudioTags& tags, TagFields fields, const QUrl& url);
/// The same, and the picture takes the place of the file's cover. WriteError (unsupportedFormat) where the container
/// takes no picture; (artworkVerificationFailed) if it is not found in the new file.
void assignArtwork(const QByteArray& artwork, const AudioTags& tags, TagFields fields, const QUrl& url);

} // namespace KeepingWriter
