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

    Workspace& workspace() const;
    History& history() const;
    FileEvents& fileEvents() const;
    FileLocks& fileLocks() const;
    Selection& selection() const;
    Favorites& favorites() const;
    Imports& imports() const;
    StrayTemporaries& strayTemporaries() const;
    Order& order() const;
    TagWriting& tagWriting() const;
    OriginalTags& originalTags() const;
    UnwrittenEdits& unwrittenEdits() const;
    GivenUpEdits& givenUpEdits() const;
    ClosingQuestion& closingQuestion() const;
    Tempo& tempo() const;
    TempoChoices& tempoChoices() const;
    Artwork& artwork() const;
    Sending& sending() const;
    Keys& keys() const;
    Removal& removal() const;
    Session& session() const;
    Playback& playback() const;
    Waveforms& waveforms() const;
    QuickLists& quickLists() const;
    StatusLine& status() const;
    WorkBoard& board() const;
    Scheduler& scheduler() const;
    Preferences& preferences() const;
    Notifications& notifications() const;

private:
    std::unique_ptr<LibraryConcerns> m_concerns;
};
