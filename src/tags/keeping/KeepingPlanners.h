#pragma once

#include "tags/keeping/KeepEdits.h"
#include "tags/writing/RewritePlan.h"

class RewriteSource;

/// New files made of old ones in which the chosen fields are changed and all else stays. Each throws WriteError
/// (unsupportedFormat) for what does not begin as such a file, (rewriteFailed) for tags of a form that is not known and
/// for what the container cannot hold, and FileError (fileReadCorruptFile) for what is broken, (fileWriteOutOfSpace)
/// for tags beyond their size fields.
namespace KeepingPlanners {

/// ID3v2 in front keeps its version; without any, one of ID3v2.3 comes. Tags behind the sound lose the chosen fields.
RewritePlan planMp3(const RewriteSource& source, const KeepEdits& edits);
/// Comments come last in the first comment block, a picture in a block behind all others.
RewritePlan planFlac(const RewriteSource& source, const KeepEdits& edits);
/// Texts come last in the last list of INFO and in the ID3v2 chunk, if there is one. The album artist and a picture
/// need that chunk and make it.
RewritePlan planWav(const RewriteSource& source, const KeepEdits& edits);
/// Texts and picture come into the first ID3v2 chunk, or a new one at the end.
RewritePlan planAiff(const RewriteSource& source, const KeepEdits& edits);
/// Items come last in the list of items. Pictures are not written.
RewritePlan planM4a(const RewriteSource& source, const KeepEdits& edits);

} // namespace KeepingPlanners
