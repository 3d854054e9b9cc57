#pragma once

#include "tags/writing/RewritePlan.h"
#include "tags/writing/TagEdits.h"

#include <optional>

class RewriteSource;
struct AudioTags;

/// New FLAC files made of old ones. Each throws WriteError (unsupportedFormat) for what does not begin with the
/// stream's marker, (rewriteFailed) for a block beyond its 24-bit size, and FileError (fileReadCorruptFile) for blocks
/// that pass the file's end.
namespace FlacWriter {

/// Comment and picture blocks go; new ones stand behind all others.
RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags, const std::optional<QByteArray>& artwork);
/// Every block stays in its place, comments filtered; without a comment block one comes last for new texts.
RewritePlan planClean(const RewriteSource& source, const TagEdits& edits);
/// Whether the bytes occur in a picture block.
bool containsArtwork(const RewriteSource& source, const QByteArray& artwork);

} // namespace FlacWriter
