#pragma once

#include "tags/keeping/KeepEdits.h"

/// Changes fields of an ID3v1 tag in their places.
namespace Id3v1Editor {

/// \param tag 128 bytes that begin with "TAG". A chosen field gets its new text cut to its room; it is blank where
/// Latin-1 has not all of the letters, and the genre, which has no texts, is always. A track number is written where
/// there is room for one.
QByteArray edited(const QByteArray& tag, const KeepEdits& edits);

} // namespace Id3v1Editor
