#pragma once

#include "core/model/TagInventory.h"
#include "tags/keeping/TagEntry.h"

/// Counts the entries of a file's tags as a plain save sees them: what is read comes back, the rest does not.
class InventoryCollector {
public:
    /// \param unwritable fields that no plain save writes into such a file.
    explicit InventoryCollector(TagInventory& inventory, TagFields unwritable = {})
        : m_inventory(inventory)
        , m_unwritable(unwritable)
    {
    }

    /// A tag of its own begins. The same field in two tags is one value; within one tag only the first is shown.
    void beginTag() { m_read = {}; }
    /// Of several entries of a field that no read supplies the first counts; of one that is read, each further text
    /// is another entry.
    void add(const TagEntry& entry);
    /// A tag that cannot be read to its end goes with a plain save all the same.
    void setUnknown() { m_inventory.isUnknown = true; }
    /// Entries that have no meaning here.
    void addOther() { ++m_inventory.otherEntries; }
    /// A picture, however many there are.
    void addPicture() { m_inventory.hasPicture = true; }

private:
    TagInventory& m_inventory;
    const TagFields m_unwritable;
    AudioTags m_read; ///< first texts of the present tag
};
