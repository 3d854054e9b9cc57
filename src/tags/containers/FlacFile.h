#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

class ItemCollector;

/// Native FLAC: blocks of metadata in front of frames of sound.
namespace FlacFile {

/// Reads the metadata blocks of a native FLAC stream.
/// \param items gets comments and pictures. Blocks that are broken or beyond the limits of fields are passed over.
/// \return nothing if the file does not say what its sound is.
std::optional<Sound> read(const ByteRange& file, ItemCollector& items);

} // namespace FlacFile
