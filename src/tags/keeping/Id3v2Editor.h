#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/keeping/KeepEdits.h"

#include <QString>

/// Changes ID3v2 tags that otherwise stay as they are, each in its own version.
namespace Id3v2Editor {

struct Edited {
    QByteArray tags;    ///< the new ones
    qint64 oldSize = 0; ///< bytes of the old ones; 0 if there are none
};
/// The tags that stand one after another at the begin of \p file. The first takes what is new. Padding, extended
/// headers, footers and the unsynchronisation of whole tags go. Throws what Id3v2Walk throws, and FileError
/// (fileWriteOutOfSpace) for a tag beyond its size field. \param path for errors.
Edited edited(const ByteRange& file, const KeepEdits& edits, News news, const QString& path);
/// An ID3v2.3 tag of what is new; nothing if that is nothing.
QByteArray newTag(const KeepEdits& edits, const QString& path);

} // namespace Id3v2Editor
