#pragma once

#include "core/library/removal/TrashCan.h"
#include "platform/files/Trash.h"

/// The real Trash, below a folder of the test.
class FolderTrashCan final : public TrashCan {
public:
    explicit FolderTrashCan(const QString& folder)
        : m_trash(folder.toUtf8())
    {
    }
    TrashedItem moveToTrash(const QUrl& url) override { return m_trash.moveToTrash(url.toLocalFile()); }
    void restore(const TrashedItem& item) override { Trash::restore(item); }

private:
    Trash m_trash;
};
