#pragma once

#include "core/model/Track.h"

#include <QList>

/// How a list of tracks differs from the one before, so that views repaint rows instead of everything.
struct ListChange {
    /// Which rows a view has to look at again.
    enum class Kind {
        Contents, ///< same rows in the same places; those in `rows` have new values
        Appended, ///< rows from `first` on are new, all before is untouched
        Removed,  ///< the tracks in `gone` left, the others stand in the order in which they stood
        Structure ///< anything else
    };
    /// What is told by the operation that changed the list.
    enum class Cause {
        Other,
        TagBatch,     ///< tags that were read come in; there may be more
        FavoriteFlags ///< stars alone
    };
    Kind kind = Kind::Structure;
    QList<int> rows; ///< ascending, in the new list; for Contents and Removed
    int first = 0;   ///< for Appended
    Cause cause = Cause::Other;
    QList<TrackID> gone = {}; ///< in the order of the old list, for Removed

    /// Whether tracks may have left the list.
    bool mayLackRows() const { return kind == Kind::Removed || kind == Kind::Structure; }
};
