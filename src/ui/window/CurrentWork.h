#pragma once

#include <QString>

#include <functional>
#include <optional>

class LibraryStore;

/// The work that the status line tells of.
struct CurrentWork {
    QString text; ///< in words, with its counts
    int done = 0;
    int total = 0;                   ///< above done
    QString kind;                    ///< the text before its counts: another one is another work
    std::function<void()> stop = {}; ///< empty for what the user cannot stop

    /// Of all that runs the one that matters most: what the user waits for (moving files, else writing tags, reading
    /// them), else the first on the board. Single files are done before anyone could read of them. Nothing while
    /// nothing runs.
    static std::optional<CurrentWork> of(LibraryStore& library);
};
