#pragma once

#include "core/library/removal/TrashCan.h"
#include "platform/files/TrashError.h"

#include <QList>
#include <QMap>

/// A Trash in memory: remembers what it was asked for and fails on demand.
class FakeTrashCan final : public TrashCan {
public:
    TrashedItem moveToTrash(const QUrl& url) override
    {
        asked.append(url);
        const QByteArray path = url.path().toUtf8();
        failIfTold(url, path);
        const TrashedItem item{path, "/trash/files/" + QByteArray::number(++m_count), "/trash/info"};
        held.insert(item.trashedPath, path);
        return item;
    }
    void restore(const TrashedItem& item) override
    {
        failIfTold(QUrl::fromLocalFile(QString::fromUtf8(item.originalPath)), item.originalPath);
        if (held.remove(item.trashedPath) == 0)
            throw TrashError(TrashError::Case::noSuchFile, item.originalPath);
        restored.append(item.originalPath);
    }

    QMap<QUrl, TrashError::Case> errors;
    QList<QUrl> asked;
    QMap<QByteArray, QByteArray> held; ///< place in the Trash to original path
    QList<QByteArray> restored;

private:
    void failIfTold(const QUrl& url, const QByteArray& path) const
    {
        if (errors.contains(url))
            throw TrashError(errors.value(url), path);
    }
    int m_count = 0;
};
