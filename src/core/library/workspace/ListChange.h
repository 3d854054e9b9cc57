#pragma once

#include <QList>

/// How a list of tracks differs from the one before, so that views repaint rows instead of everything.
struct ListChange {
    enum class Kind {
        Contents, ///< same rows in the same places; those in `rows` have new values
        Appended, ///< rows from `first` on are new, all before is untouched
        Structure ///< anything else
    };
    /// What is told by the operation that changed the list.
    enum class Cause {
        Other,
        TagBatch,     ///< tags that were read come in; there may be more
        FavoriteFlags ///< stars alone
    };
    Kind kind = Kind::Structure;
    QList<int> rows; ///< ascending, for Contents
    int first = 0;   ///< for Appended
    Cause cause = Cause::Other;
};
