#pragma once

#include "tags/bytes/ByteSource.h"

class ItemCollector;

/// The iTunes-style items of an MPEG-4 file.
namespace Mp4Items {

/// Adds every value of every field as an item, in order, but of all pictures the last alone. Values beyond
/// FieldLimits and of kinds that are no text are passed over.
/// \param list the body of the atom "ilst"
void read(const ByteRange& list, ItemCollector& items);

} // namespace Mp4Items
