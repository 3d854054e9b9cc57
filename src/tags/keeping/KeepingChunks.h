#pragma once

#include "tags/keeping/KeepEdits.h"
#include "tags/writing/ChunkForm.h"

class RewritePlan;
class RewriteSource;

/// What the keeping saves of WAV and AIFF files have in common.
namespace KeepingChunks {

/// Adds an ID3v2 chunk with its tags changed; what stands behind them in the chunk stays. An empty chunk that takes
/// what is new gets a new tag. Throws what Id3v2Editor throws, and WriteError (rewriteFailed) for a chunk that holds
/// no tag, or beyond 32 bits.
void addEditedID3(RewritePlan& plan, const ChunkForm& form, const FileChunk& chunk, const RewriteSource& source,
                  const KeepEdits& edits, News news);

} // namespace KeepingChunks
