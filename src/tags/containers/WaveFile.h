#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

class ItemCollector;

namespace WaveFile {

/// Reads the chunks of a RIFF or RF64 WAVE file: LIST INFO first, then the ID3 chunk, wherever they stand.
/// \return nothing if the file does not say what its sound is.
/// Where the size of the sound is 0, as recorders leave it that crashed, all up to the end is taken for sound, unless
/// it is one chunk after another.
std::optional<Sound> read(const ByteRange& file, ItemCollector& items);

} // namespace WaveFile
