#pragma once

#include "core/model/LibrarySection.h"

#include <QKeySequence>
#include <QSet>

#include <optional>

/// All that the user can tell the program to do, by menu, button or key.
enum class CommandID {
    // The player.
    PlayPause,
    PlayRow,
    SeekBack,
    SeekForward,
    PreviousTrack,
    NextTrack,
    ToggleMute,
    TapTempo,
    // Sections and what the window shows of them.
    ShowPlaylist,
    ShowFavorites,
    ShowCovers,
    ShowConverter,
    ShowAnalysis,
    ShowMusicalKey,
    ShowDuplicates,
    AddFiles,
    AddFilesHere,
    SelectAll,
    ShowTags,
    PastePicture,
    Undo,
    Redo,
    // Rows and where they stand.
    Favorite,
    AddToFavorites,
    RemoveFromFavorites,
    ClearFavoriteFilter,
    Remove,
    Trash,
    Reveal,
    SendToAnalysis,
    SendToConversion,
    // Tags.
    AssignGenre,
    ClearGenre,
    AssignComment,
    ClearComment,
    AssignAlbum,
    ClearAlbum,
    AssignCover,
    RestoreTags,
    // Tempo and key.
    DoubleTempo,
    HalveTempo,
    SetTempo,
    WriteTempo,
    DetectTempo,
    AnalyzeKeys,
    WriteKeys,
    // Offers of the status line.
    TrashLeftovers,
};
/// Entries of the table; TrashLeftovers stays the last.
inline constexpr int kCommandCount = static_cast<int>(CommandID::TrashLeftovers) + 1;

/// One entry of the table of commands. What it does is bound elsewhere, see CommandCenter.
struct Command {
    /// Whether it is for rows, and cannot be given without any.
    enum class ActsOn { Nothing, Rows };
    /// What a key does that is held down.
    enum class Repeat { No, Yes };

    CommandID id;
    /// Its name for stored keys and for spoken words. On disk, never change.
    QString name;
    /// Russian, shown through Texts::localized.
    QString text;
    /// What it does in a sentence, for a tooltip, likewise; empty where the text is enough.
    QString hint = {};
    /// A picture of the icon set; empty for none.
    QString icon = {};
    /// The keys that it has at first, the one that is shown in front.
    QList<QKeySequence> keys = {};
    ActsOn actsOn = ActsOn::Nothing;
    /// The sections that have it.
    bool (*isIn)(const LibrarySection& section) = [](const LibrarySection&) { return true; };
    Repeat repeat = Repeat::No; ///< whether a key that is held does it again
};

/// What a command is to act on.
struct CommandTarget {
    /// Rows of the section are reduced to what it shows; what the player has is acted on wherever it stands.
    enum class Of { Section, Player };

    /// The rows; empty for a command that is for none.
    QSet<TrackID> ids = {};
    Of of = Of::Section;             ///< whether they are rows of the section shown or what the player has
    std::optional<Track> track = {}; ///< the row to play
    QString text = {};               ///< the value to assign
    int number = 0;                  ///< a tempo in BPM
};

namespace Commands {

/// The entry of a command; every id has one.
const Command& of(CommandID id);
/// In the order of CommandID.
const std::vector<Command>& all();
/// The command that shows a section.
CommandID showing(LibraryTab tab);
/// Text in the language of the interface.
QString text(CommandID id);
/// The first key as menus and tooltips show it, "Shift+Del", "Alt+↑"; empty without keys.
QString keys(CommandID id);

} // namespace Commands
