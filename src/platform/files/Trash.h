#pragma once

#include "platform/files/TrashFolder.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

/// What a move to the Trash came to. Paths are bytes of the file system.
struct TrashedItem {
    QByteArray originalPath; ///< absolute, the links in its folder resolved
    QByteArray trashedPath;  ///< in the trash's "files"
    QByteArray infoPath;     ///< its ".trashinfo"
    quint64 inode = 0;       ///< of the file; 0 if it is not known

    /// The file in the Trash; not to be opened by where the name is no UTF-8.
    QUrl trashedURL() const;
};

/// The Trash by the rules of freedesktop.org, version 1.0. Files and folders move by their name alone: nothing is
/// copied, overwritten or deleted, and where that cannot be kept the file stays. A process that ends in the middle
/// leaves at most an info file without its file. Steps of a move:
///  1. the home trash if it is on the file's mount, else the volume's, made where missing;
///  2. the info file, made anew under the file's name, with a number if that is taken, and synced;
///  3. the file, to the same name in "files".
/// Thread: any, meant for the background.
class Trash {
public:
    /// \param homeTrash absolute; made when it is needed.
    explicit Trash(QByteArray homeTrash = TrashFolder::homeTrash());

    /// Moves a file, a folder or a symbolic link (never its target). Errors: TrashError, and the file stays.
    TrashedItem moveToTrash(const QString& path) const;
    /// The same for a name that need not be UTF-8.
    TrashedItem moveToTrash(const QByteArray& path) const;

    /// Moves an item back to where it was. Its folder is made again if it is gone. Errors: TrashError; fileExists if
    /// the place is taken, noSuchFile if the item has left the Trash; nothing has moved then.
    static void restore(const TrashedItem& item);

private:
    QByteArray m_homeTrash;
};
