#pragma once

#include "core/library/removal/TrashCan.h"

/// The user's Trash, by the rules of the desktop. Thread: workers.
class LibraryTrashCan final : public TrashCan {
public:
    TrashedItem moveToTrash(const QUrl& url) override { return m_trash.moveToTrash(url.toLocalFile()); }
    void restore(const TrashedItem& item) override { Trash::restore(item); }

private:
    Trash m_trash;
};
