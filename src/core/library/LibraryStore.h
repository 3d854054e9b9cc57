#pragma once

#include <memory>

class Artwork;
class ClosingQuestion;
class Favorites;
class FileEvents;
class FileLocks;
class History;
class Imports;
class Keys;
class Notifications;
class Order;
class OriginalTags;
class UnwrittenEdits;
class GivenUpEdits;
class Playback;
class Preferences;
class QuickLists;
class Removal;
class Scheduler;
class Selection;
class Sending;
class Session;
class StatusLine;
class StrayTemporaries;
class TagWriting;
class Tempo;
class TempoChoices;
class Waveforms;
class WorkBoard;
class Workspace;
struct LibraryConcerns;
struct LibraryServices;

/// The centre of the program: owns the workspace and one object per concern, and has no operations of its own. Created
/// once by the application, lives as long as the process. Thread: main.
class LibraryStore {
public:
    /// \param services what the store stands on; outlives it.
    explicit LibraryStore(const LibraryServices& services);
    ~LibraryStore();
    LibraryStore(const LibraryStore&) = delete;
    LibraryStore& operator=(const LibraryStore&) = delete;

    /// What the window shows: lists, selection, messages. Each of these accessors gives one object, which lives as
    /// long as the store.
    Workspace& workspace() const;
    /// What the user did and can take back.
    History& history() const;
    /// What the program did to files, as one signal.
    FileEvents& fileEvents() const;
    /// Which paths are being written or moved, and who waits for them.
    FileLocks& fileLocks() const;
    /// The rows of the sections, and the selection that each remembers.
    Selection& selection() const;
    /// Who is in Favorites and Covers, and the filter of Favorites.
    Favorites& favorites() const;
    /// Files and folders that become rows.
    Imports& imports() const;
    /// Leftovers of interrupted writes that imports met.
    StrayTemporaries& strayTemporaries() const;
    /// The display order of the playlist and of Favorites.
    Order& order() const;
    /// Edits of tags, which go into rows and files.
    TagWriting& tagWriting() const;
    /// Tags as files had them before the program first changed them.
    OriginalTags& originalTags() const;
    /// Edits that are in rows and not in their files.
    UnwrittenEdits& unwrittenEdits() const;
    GivenUpEdits& givenUpEdits() const;
    ClosingQuestion& closingQuestion() const;
    /// Which tracks get a tempo, and what was found.
    Tempo& tempo() const;
    /// What the user makes of the tempos found.
    TempoChoices& tempoChoices() const;
    /// Pictures on their way into files.
    Artwork& artwork() const;
    /// Tracks sent on to another section.
    Sending& sending() const;
    /// The keys of the rows of the key section.
    Keys& keys() const;
    /// Rows taken off lists, and files moved to the Trash.
    Removal& removal() const;
    /// What outlives the program, and its checkpoints.
    Session& session() const;
    /// What the player told last, and what it is asked when rows go.
    Playback& playback() const;
    /// Waveforms that are made before they are seen.
    Waveforms& waveforms() const;
    /// Genres, comments and albums to pick from.
    QuickLists& quickLists() const;
    /// The one message of the status line.
    StatusLine& status() const;
    /// How far the work in the background is, with a stop for each kind.
    WorkBoard& board() const;
    /// What may run in the background now.
    Scheduler& scheduler() const;
    /// Two of the services, for those who have the store at hand.
    Preferences& preferences() const;
    /// The program's events.
    Notifications& notifications() const;

private:
    std::unique_ptr<LibraryConcerns> m_concerns;
};
