#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

class ItemCollector;

namespace Mp4File {

/// Reads the first audio track and the iTunes-style tags of an MPEG-4 file.
/// \return nothing if the file does not say what its sound is.
/// \param items gets every text, and the last picture
std::optional<Sound> read(const ByteRange& file, ItemCollector& items);

} // namespace Mp4File
