#pragma once

class LibraryStore;

/// Made-up results of the analysis of keys.
namespace DemoKeys {

/// Fills the key section: keys for most of its rows, one row without a result, and, while \p waits, two in the queue.
void fill(LibraryStore& library, bool waits);

} // namespace DemoKeys
