#pragma once

#include <QList>

/// How a list of tracks differs from the one before, so that views repaint rows instead of everything.
struct ListChange {
    enum class Kind {
        Contents, ///< same rows in the same places; those in `rows` have new values
        Appended, ///< rows from `first` on are new, all before is untouched
        Structure ///< anything else
    };
    Kind kind = Kind::Structure;
    QList<int> rows; ///< ascending, for Contents
    int first = 0;   ///< for Appended
};
