#pragma once

#include "tags/writing/RewritePlan.h"
#include "tags/writing/TagEdits.h"

#include <optional>

class RewriteSource;
struct FileChunk;
struct AudioTags;

/// New AIFF files made of old ones. Each throws WriteError (unsupportedFormat) for what does not begin as such a file,
/// (rewriteFailed) for a new file beyond 32 bits, and FileError (fileReadCorruptFile) for a chunk that passes the end.
namespace AiffWriter {

/// Text chunks and ID3v2 chunks go; a new ID3v2 chunk stands behind all others. Bytes at the end that are too few for a
/// chunk go as well.
RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags, const std::optional<QByteArray>& artwork);
/// Chunks stay in their places, ID3v2 chunks filtered, the name and the comments dropped with their fields; the new
/// title and album stand in the first ID3v2 chunk, which comes last if there is none.
RewritePlan planClean(const RewriteSource& source, const TagEdits& edits);
/// Whether the chunk is one of the texts that a save drops.
bool isText(const FileChunk& chunk);

} // namespace AiffWriter
