#pragma once

#include "tags/writing/ChunkForm.h"
#include "tags/writing/TagEdits.h"

#include <functional>

struct AudioTags;

/// The LIST chunk of INFO in a WAV file.
namespace RiffInfoWriter {

/// The body with the fields that are not empty, in their fixed order; nothing if all are. The album artist has no
/// place here.
QByteArray list(const AudioTags& tags);
/// Whether the chunk is a list of INFO, by its id and the first four bytes of its body.
bool isInfo(const FileChunk& chunk, const RewriteSource& source);
/// Adds the list without the chosen fields and with the new title and album behind the others, which stay byte for
/// byte. WriteError (rewriteFailed) for a list beyond 32 bits, FileError (fileReadCorruptFile) for a chunk that
/// passes its end.
void addFiltered(RewritePlan& plan, const FileChunk& list, const RewriteSource& source, const TagEdits& edits);
/// The same for chunks that are chosen otherwise.
using IsDropped = std::function<bool(const FileChunk& chunk)>;
/// \param added whole chunks behind the others.
void addFiltered(RewritePlan& plan, const FileChunk& list, const RewriteSource& source, const IsDropped& isDropped,
                 const QByteArray& added);
/// The body of a list of the new title and album alone.
QByteArray added(const TagEdits& edits);

} // namespace RiffInfoWriter
