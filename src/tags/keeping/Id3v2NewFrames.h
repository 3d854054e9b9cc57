#pragma once

#include "tags/keeping/KeepEdits.h"

/// Frames for the texts and the picture of a keeping save.
namespace Id3v2NewFrames {

/// \param version of the tag that they are for, 2 to 4. WriteError (rewriteFailed, "ID3") if a frame is larger than
/// its size field can say.
QByteArray frames(const KeepEdits& edits, int version);

} // namespace Id3v2NewFrames
