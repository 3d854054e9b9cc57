#pragma once

#include "tags/bytes/ByteSource.h"

class ItemCollector;

/// APEv1 and APEv2 tags, which stand behind the audio of some MPEG files.
namespace ApeTag {

/// Adds the items of the tag that ends \p range, and cuts the tag off the range. Nothing happens without one. A block
/// whose flags call it a header is none: it would have to end somewhere behind.
void read(ByteRange& range, ItemCollector& items);

} // namespace ApeTag
