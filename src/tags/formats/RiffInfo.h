#pragma once

#include "tags/bytes/ByteSource.h"

class ItemCollector;

/// The text chunks of a WAVE file's LIST INFO.
namespace RiffInfo {

/// \param list what follows the list's type "INFO".
void read(const ByteRange& list, ItemCollector& items);

} // namespace RiffInfo
