#pragma once

#include "async/Executor.h"
#include "async/TaskQueue.h"
#include "core/library/removal/RemovalHistory.h"
#include "core/library/removal/RemovalPlan.h"
#include "core/model/LibraryTab.h"

#include <QObject>

#include <functional>

class FileLocks;
class Notifications;
class Selection;
class StatusLine;
class TrashCan;
class Workspace;

/// Rows taken off the lists, files moved to the Trash, and the history that brings both back. Files move in the
/// background one after another, each after the write that is under way into it; the rows of an action leave together
/// when its last file has moved, and come back with their files. Thread: main.
class Removal : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Selection& selection;
        StatusLine& status;
        Notifications& notifications;
        async::Executor& executor;
        FileLocks& locks;
        TrashCan* trashCan; ///< null where there is none: nothing is moved then
        /// Lets the player move on when its track leaves these rows.
        std::function<void(const QSet<TrackID>& ids, const QList<Track>& rows)> continuePlaybackAfterRemoving;
        /// Reads the tags of rows that left their list before they were read.
        std::function<void(const QList<Track>& tracks, Track::MetadataDestination list)> readTags;
        /// Writes what was edited of a row and had not come to its file when it left.
        std::function<void(const TrackID& id)> writePendingEdits;
        /// Wants the tempo of rows that came back into the main list and have been read.
        std::function<void(const QSet<TrackID>& ids)> detectBPM;
    };

    /// Files moved and to be moved by the action under way; none at other times.
    struct Progress {
        int done = 0;
        int total = 0;
        bool isRestoring = false;
    };

    explicit Removal(const Dependencies& dependencies);
    ~Removal() override;

    /// Takes rows out of the playlist. Favourites stay in the main list, all others leave it, and with it Covers.
    void removeTracksFromPlaylist(const QSet<TrackID>& ids);
    /// Takes rows off the analysis list.
    void removeFromAnalysis(const QSet<TrackID>& ids);
    /// Takes rows off the list of the key section.
    void removeFromMusicalKeyAnalysis(const QSet<TrackID>& ids);
    /// Moves the files of rows of any list to the Trash; every row of a file that went leaves its list. A file that
    /// fails stays with its rows, the first error is shown.
    void trashTracks(const QSet<TrackID>& ids);
    /// The same for rows of the duplicates section.
    void trashDuplicateTracks(const QSet<TrackID>& ids);
    /// Takes the last step of the history back, or the Trash move that is under way, once it is over. What cannot be
    /// restored is skipped with an error.
    void undoLastRemoval();
    /// Ends the round of moves under way after its present file. Files that went stay there and can be taken back; a
    /// restore keeps what is left in the history.
    void stopMoving();

    /// The steps that can be taken back, the last one on top.
    const QList<RemovalStep>& removalHistory() const { return m_history.steps(); }
    /// Whether the top step holds a file in the Trash.
    bool canUndoPhysicalTrash() const;
    /// The moment of what undoLastRemoval() would take back, see nextUndoMoment(); 0 if there is nothing.
    quint64 undoMoment() const { return m_history.undoMoment(); }
    /// Whether something is being taken back right now: what was done before it has to wait.
    bool isTakingBack() const { return m_history.isTakingBack(); }
    /// Localised name of what undoLastRemoval() would take back.
    QString undoActionName() const;
    Progress progress() const { return m_progress; }

Q_SIGNALS:
    /// What undoLastRemoval() would take back.
    void historyChanged();
    void progressChanged();

private:
    struct Moves;
    /// What is known of a move before it has ended.
    struct Request {
        quint64 moment = 0;
        LibraryTab tab = LibraryTab::Playlist; ///< whose rows playback goes on with
        QList<QUrl> files;
    };

    void removeFromList(Track::MetadataDestination list, const QSet<TrackID>& ids, const RemovalStep& step,
                        const QString& message);
    void trash(LibraryTab tab, const QList<QUrl>& files);
    async::Task<> trashTask(Request request, std::stop_token stop);
    void finishTrash(const Request& request, const Moves& moves);
    async::Task<> restoreTask(quint64 moment, std::stop_token stop);
    void push(RemovalStep step);
    /// What came back into the lists so far.
    struct Restored {
        QSet<QUrl> files;
        QHash<Track::MetadataDestination, QList<TrackID>> ids;
        int left = 0; ///< files that a stop left in the Trash
    };
    void putBackMoved(quint64 moment, const QList<RemovedTrack>& entries, Restored& restored);
    void putBack(QList<RemovedTrack> entries, Restored& restored);
    void putBackInto(Track::MetadataDestination list, const QList<RemovedTrack>& entries, Restored& restored);
    void announceRestored(const Restored& restored);
    void selectRestored(const QList<TrackID>& ids);
    void dropSelected(const QSet<TrackID>& ids);
    void beginProgress(int files, bool isRestoring);
    void advanceProgress();
    int endProgress();

    Dependencies m_dependencies;
    RemovalHistory m_history;
    Progress m_progress;
    bool m_isStopping = false;
    async::TaskQueue m_moves;
};
