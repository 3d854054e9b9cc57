#pragma once

#include "tags/bytes/ByteSource.h"

class ItemCollector;

/// The iTunes-style items of an MPEG-4 file.
namespace Mp4Items {

/// \param list the body of the atom "ilst". Every value of a field becomes an item.
void read(const ByteRange& list, ItemCollector& items);

} // namespace Mp4Items
