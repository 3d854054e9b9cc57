#pragma once

#include "platform/files/FileStamp.h"
#include "platform/files/Trash.h"

#include <QString>
#include <QUrl>

#include <optional>

class TrashCan;

/// What became of one file on its way to the Trash, or back. Blocks, for workers.
struct TrashMove {
    std::optional<TrashedItem> item; ///< set if it went
    QString error;                   ///< empty if nothing went wrong
    std::optional<FileStamp> before;
    std::optional<FileStamp> after;

    static TrashMove away(TrashCan& can, const QUrl& url);
    static TrashMove back(TrashCan& can, const TrashedItem& item, const QUrl& url);
};
