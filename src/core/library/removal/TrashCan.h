#pragma once

#include "platform/files/Trash.h"

#include <QUrl>

/// Where files go that the user throws away. This one takes none. Called on worker threads.
class TrashCan {
public:
    virtual ~TrashCan() = default;

    /// Moves a file to the Trash. Errors: TrashError, and the file stays.
    virtual TrashedItem moveToTrash(const QUrl& url);
    /// Moves a file back to where it was. Errors: TrashError, fileExists where the place is taken, noSuchFile where the
    /// file has left the Trash; nothing has moved then.
    virtual void restore(const TrashedItem& item);

    /// The one that takes no file.
    static TrashCan& none();
};
