#pragma once

#include <QString>

class StatusLine;

/// What the status line says of a step that is taken back, or done again, in files: first that it is on its way, then
/// what came of it.
struct StepAnnouncement {
    enum class Direction { Back, Forth };

    QString actionName; ///< localisation key
    Direction direction = Direction::Back;

    void showBegun(StatusLine& status) const;
    /// \param leftAlone files, or rows, that were changed since. \param notWritten files that could not be written; why
    /// has a message of its own.
    void showEnded(StatusLine& status, qsizetype leftAlone, qsizetype notWritten) const;
};
