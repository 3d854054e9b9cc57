#pragma once

#include "core/library/files/FileLine.h"
#include "core/library/removal/RemovalPlan.h"
#include "core/library/removal/RowReturns.h"
#include "core/model/LibraryTab.h"

#include <QObject>

namespace async {
class Executor;
}
class FileEvents;
class History;
class Notifications;
class RemovalStep;
class Selection;
class StatusLine;
class TrashCan;
class Workspace;

/// Rows taken off the lists and files moved to the Trash, each action a step of the history that brings them back.
/// Files move in the background one after another, each after the write that is under way into it; the rows of an
/// action leave together when its last file has moved, and come back with their files. Thread: main.
class Removal : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Selection& selection;
        StatusLine& status;
        Notifications& notifications;
        History& history;
        async::Executor& executor;
        FileLocks& locks;
        FileEvents& events;
        WorkBoard& board;
        TrashCan* trashCan; ///< null where there is none: nothing is moved then
    };

    explicit Removal(const Dependencies& dependencies);
    ~Removal() override;

    /// Takes rows out of the playlist. Favourites stay in the main list, all others leave it, and with it Covers. The
    /// player moves on from a row that left.
    void removeTracksFromPlaylist(const QSet<TrackID>& ids);
    /// Takes rows out of Covers. Favourites refuse with a notice; a row in no section at all leaves the main list.
    void removeFromCoverWorkspace(const QSet<TrackID>& ids);
    /// Takes rows off the analysis list.
    void removeFromAnalysis(const QSet<TrackID>& ids);
    /// Takes rows off the list of the key section.
    void removeFromMusicalKeyAnalysis(const QSet<TrackID>& ids);
    /// Moves the files of rows of any list to the Trash; every row of a file that went leaves its list. A file that
    /// fails stays with its rows, the first error is shown. A stop on the board lets the present file go; what went can
    /// be taken back, and a restore that was stopped keeps what is left in the history.
    void trashTracks(const QSet<TrackID>& ids);
    /// The same for rows of the duplicates section.
    void trashDuplicateTracks(const QSet<TrackID>& ids);
    /// Puts the rows of all files into their lists that are back by now: what is saved next may be the last.
    void settle();
    /// The program ends: the row of the file in hand comes too, for the file may come yet.
    void settleForTheEnd();

Q_SIGNALS:
    /// Rows have left a list. \param rows of the section as they stood before, in display order.
    void rowsLeft(const QSet<TrackID>& ids, const QList<Track>& rows);
    /// Rows are back in a list. \param ids those that have been read. \param unread those that have to be, again too.
    void rowsCameBack(Track::MetadataDestination list, const QSet<TrackID>& ids, const QList<Track>& unread);

private:
    friend class RemovalStep;
    class TrashRound;
    class RestoreRound;
    void remove(RemovalPlan::Cut cut, const QList<Track>& rows, const QString& actionName, const QString& message);
    void trash(LibraryTab tab, const QList<QUrl>& files);
    void finishTrash(TrashRound& round, int left);
    void restore(std::shared_ptr<RemovalStep> step);
    bool putBack(const QList<RemovedTrack>& entries);
    void dropSelected(const QSet<TrackID>& ids);

    Dependencies m_dependencies;
    RowReturns m_returns;
    RestoreRound* m_restoring = nullptr; ///< the round under way
    FileLine m_line;
};
