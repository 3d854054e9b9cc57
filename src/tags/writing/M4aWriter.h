#pragma once

#include "tags/writing/RewritePlan.h"
#include "tags/writing/TagEdits.h"

#include <functional>

class RewriteSource;
struct AudioTags;

/// New M4A files made of old ones: the movie atom is made anew, and what it says about the sound's place goes with it.
/// Each throws WriteError (unsupportedFormat) for what does not begin as an MPEG-4 file, (rewriteFailed) for fragmented
/// files and for offsets that cannot be moved, and FileError (fileReadCorruptFile) for atoms that pass their end.
namespace M4aWriter {

/// Title, artist, album, genre and comment replace all tags.
RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags);
/// Tags in the form of numbered keys are refused as rewriteFailed.
RewritePlan planClean(const RewriteSource& source, const TagEdits& edits);

/// From the body of the movie atom to the new one; nothing if it is broken.
using Change = std::function<std::optional<QByteArray>(QByteArrayView movie)>;
/// Any other change of the movie atom.
RewritePlan planWith(const RewriteSource& source, const Change& change);
/// The body of the movie atom. Throws what the planners throw.
QByteArray movie(const RewriteSource& source);

} // namespace M4aWriter
