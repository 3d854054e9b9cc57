#pragma once

#include "tags/bytes/ByteSource.h"

class ItemCollector;

/// The text chunks of a WAVE file's LIST INFO.
namespace RiffInfo {

/// Adds every chunk as text up to its first zero; the encoding is found out later, as nothing tells it. Texts beyond
/// FieldLimits are passed over.
/// \param list what follows the list's type "INFO"
void read(const ByteRange& list, ItemCollector& items);

} // namespace RiffInfo
