#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

class ItemCollector;

namespace AiffFile {

/// Reads the chunks of an AIFF or AIFC file: the text chunks first, then the ID3 chunk, wherever they stand.
/// \return nothing if the file does not say what its sound is.
/// \param items gets name, author, annotations and copyright; texts beyond FieldLimits are passed over
std::optional<Sound> read(const ByteRange& file, ItemCollector& items);

} // namespace AiffFile
