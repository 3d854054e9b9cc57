#pragma once

#include <QString>

#include <optional>

class DashboardActions;
class LibraryStore;

/// The work in the background that the status line tells of.
struct CurrentWork {
    QString text; ///< in words, with its counts
    int done = 0;
    int total = 0;                              ///< above done
    void (DashboardActions::*stop)() = nullptr; ///< null for what the user cannot stop

    /// Of all that runs the one that matters most: moving files, else writing tags, reading them, finding keys or
    /// tempos. It may be another one when the section shown is.
    /// Single files are done before anyone could read of them. Nothing while nothing runs.
    static std::optional<CurrentWork> of(const LibraryStore& library);
};
