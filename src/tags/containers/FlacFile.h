#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

class ItemCollector;

/// Native FLAC: blocks of metadata in front of frames of sound.
namespace FlacFile {

/// Reads the metadata blocks of a native FLAC stream.
/// \param file begins with the marker "fLaC".
/// \param items gets the comments of the first comment block, then one picture: the last that is not empty, wherever
///     it stands. Broken blocks are passed over.
/// \return nothing if the file does not say what its sound is.
std::optional<Sound> read(const ByteRange& file, ItemCollector& items);

} // namespace FlacFile
