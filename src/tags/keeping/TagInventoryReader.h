#pragma once

#include "core/model/TagInventory.h"

#include <QUrl>

/// Looks through a file's tags for what a save may take away. Stateless; blocks; for workers.
namespace TagInventoryReader {

/// Never throws: of tags that cannot be read what was found up to there counts, and isUnknown tells that there is more;
/// nothing for files whose tags are not written.
TagInventory read(const QUrl& url);

} // namespace TagInventoryReader
