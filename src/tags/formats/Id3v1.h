#pragma once

#include "tags/bytes/ByteSource.h"

class ItemCollector;

/// The 128 bytes at the end of MPEG files, fields of fixed length without a stated encoding.
namespace Id3v1 {

/// Adds the fields of the tag that ends \p range, and cuts the tag off the range. Nothing happens without one.
void read(ByteRange& range, ItemCollector& items);

} // namespace Id3v1
