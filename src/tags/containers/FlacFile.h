#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

class ItemCollector;

namespace FlacFile {

/// Reads the metadata blocks of a native FLAC stream.
/// \return nothing if the file does not say what its sound is.
std::optional<Sound> read(const ByteRange& file, ItemCollector& items);

} // namespace FlacFile
