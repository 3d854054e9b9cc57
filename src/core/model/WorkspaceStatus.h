#pragma once

#include <QString>
#include <QUuid>

/// One message of the status line.
struct WorkspaceStatus {
    /// What the message's colour says. Stored nowhere.
    enum class Tone { Neutral = 0, Success = 1, Warning = 2 };

    QUuid id;        ///< fresh per message, so that two equal texts in a row still count as a change
    QString icon;    ///< symbol name, e.g. "music.note.list"; the icons of the window map it to a picture
    QString message; ///< final, localised text
    Tone tone = Tone::Neutral;
};
