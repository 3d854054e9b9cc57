#pragma once

#include "tags/writing/RewritePlan.h"
#include "tags/writing/TagEdits.h"

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

} // namespace M4aWriter
