#include "tags/keeping/InventoryCollector.h"

void InventoryCollector::add(const TagEntry& entry)
{
    switch (entry.kind) {
    case TagEntry::Kind::Picture:
        return addPicture();
    case TagEntry::Kind::Other:
        return addOther();
    case TagEntry::Kind::EncoderMark:
        return;
    case TagEntry::Kind::Field:
        break;
    }
    if (!entry.text.isEmpty())
        m_inventory.unwritable |= m_unwritable & entry.field;
    if (TagFieldSet::kNeverRead.testFlag(entry.field)) {
        QString& text = m_inventory.unread.*TagFieldSet::member(entry.field);
        if (text.isEmpty())
            text = entry.text;
    } else if (!entry.isRead) {
        addOther(); // another name of the field, which no row shows
    } else {
        QString& text = m_read.*TagFieldSet::member(entry.field);
        if (text.isEmpty())
            text = entry.text;
        else if (!entry.text.isEmpty() && entry.text != text)
            addOther(); // one value is all that comes back
    }
}
