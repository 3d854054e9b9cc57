#pragma once

#include <QByteArray>

/// The Trash that takes files of one folder, found or made by the freedesktop.org rules.
struct TrashFolder {
    QByteArray path;   ///< holds "files" and "info"
    QByteArray topdir; ///< of the volume, against which the info files' paths stand; empty for the home trash

    /// Where the files are kept, each under a name of its own.
    QByteArray files() const { return path + "/files"; }
    /// Where the text of each stands: where it was and when it was deleted.
    QByteArray info() const { return path + "/info"; }

    /// The home trash for a folder on the same mount, else that of the folder's volume; made where it is missing.
    /// \param folder absolute, without links. \param homeTrash where the home trash is or shall be, absolute.
    /// \param file named in the error. Errors: TrashError. Thread: background.
    static TrashFolder forFolder(const QByteArray& folder, const QByteArray& homeTrash, const QByteArray& file);

    /// "$XDG_DATA_HOME/Trash", by default "~/.local/share/Trash".
    static QByteArray homeTrash();
};
