#pragma once

#include <QString>
#include <QUuid>

/// The picture before a message of the status line, by what the message is about; the window has a drawing for each.
enum class StatusIcon {
    Info,
    Done,
    Warning,
    Undo,
    Redo,
    Trash,
    Playlist,
    Favorite,
    FavoriteAdded,
    FavoriteRemoved,
    Cover,  ///< one that is written into files
    Covers, ///< the section
    Conversion,
    Key,
    Tempo,
    Genre,
    Comment,
    Album,
    Tag,
    Sound,
    SoundOff,
};
/// How many pictures there are, for tables by icon; SoundOff stays the last.
inline constexpr int kStatusIconCount = static_cast<int>(StatusIcon::SoundOff) + 1;

/// One message of the status line.
struct WorkspaceStatus {
    /// What the message's colour says. Stored nowhere.
    enum class Tone { Neutral = 0, Success = 1, Warning = 2 };

    QUuid id; ///< fresh per message, so that two equal texts in a row still count as a change
    StatusIcon icon = StatusIcon::Info;
    QString message; ///< final, localised text
    Tone tone = Tone::Neutral;
};
