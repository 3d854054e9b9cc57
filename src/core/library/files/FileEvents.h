#pragma once

#include "platform/files/FileStamp.h"

#include <QObject>
#include <QUrl>

#include <optional>

/// What the program did to one file. A value.
struct FileChange {
    enum class Kind {
        Rewritten, ///< a whole new file took the old one's place
        Moved,     ///< renamed, or put elsewhere
        Trashed,
        CameBack, ///< from the Trash, to where it was
    };

    Kind kind = Kind::Rewritten;
    /// Where the file is now; for one in the Trash where it was before, since what is known of it stays there.
    QUrl url;
    QUrl former; ///< where it was before a move; else the same as url
    /// The file before and after, as far as it could be looked at.
    std::optional<FileStamp> before;
    std::optional<FileStamp> after;
    bool isSoundSame = true; ///< what was found out about the sound holds on
};

/// Tells all who know something about a file what the program itself did to it. What other programs do is not told
/// here. Owned by the store, outlives the concerns. Thread: main.
class FileEvents : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// To be called once the change is complete and the file can be looked at; all listeners have followed when it
    /// returns.
    void tell(const FileChange& change) { emit changed(change); }

Q_SIGNALS:
    /// Once for each file of an operation, in the order in which they were changed.
    void changed(const FileChange& change);
};
