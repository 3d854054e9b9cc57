#pragma once

#include "tags/writing/ChunkForm.h"
#include "tags/writing/TagEdits.h"

/// What the writers of WAV and AIFF files have in common: the frame, and an ID3v2 tag in a chunk.
namespace ChunkTagWriter {

/// The file's header, whose size is set when all chunks are there. Throws WriteError (unsupportedFormat) for another
/// kind of file.
RewritePlan begin(const ChunkForm& form, const RewriteSource& source);
/// Keeps a chunk with its padding, marked if it is the sound.
void keep(RewritePlan& plan, const ChunkForm& form, const FileChunk& chunk);

/// Whether the id is "ID3 ", or "id3 " as it is in WAV files; both are read by others in both forms.
bool isID3(const FileChunk& chunk);
/// Adds a chunk of new bytes. WriteError (rewriteFailed) beyond 32 bits.
void addChunk(RewritePlan& plan, const ChunkForm& form, QByteArrayView id, const QByteArray& body);
/// The same with an ID3v2 tag; one that cannot tell its size is WriteError (rewriteFailed).
void addID3(RewritePlan& plan, const ChunkForm& form, QByteArrayView id, const QByteArray& tag);
/// Adds the ID3v2 chunk without the frames of the chosen fields; what stands behind the tag in the chunk stays. Throws
/// what the filter of ID3v2 tags throws.
void addFilteredID3(RewritePlan& plan, const ChunkForm& form, const FileChunk& chunk, const RewriteSource& source,
                    const TagEdits& edits);
/// Whether the bytes occur in an ID3v2 chunk.
bool containsArtwork(const ChunkForm& form, const RewriteSource& source, const QByteArray& artwork);

} // namespace ChunkTagWriter
