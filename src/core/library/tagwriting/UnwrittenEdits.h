#pragma once

#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "async/TaskSlot.h"
#include "core/library/tagwriting/EditJournal.h"
#include "core/library/workspace/ListChange.h"
#include "core/model/Track.h"

#include <QHash>
#include <QObject>
#include <QSet>

class FileEvents;
class StatusLine;
class TagSaver;
class Workspace;
struct FileChange;

/// The edits that are not in their files: watches the rows, keeps a note of each edit on disk until its file holds
/// it, brings back what an earlier run left, and writes again what failed. Into a file that another program changed
/// meanwhile it writes only when the user asks for it. Thread: main.
class UnwrittenEdits : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        TagSaver& saver;
        async::Executor& executor;
        FileEvents& events;
        StatusLine& status;   ///< warns while edits cannot be kept
        EditJournal* journal; ///< null where nothing is kept; outlives the executor
    };

    explicit UnwrittenEdits(const Dependencies& dependencies);
    ~UnwrittenEdits() override;

    /// Rows of the main list with edits that are not in their files.
    const QSet<TrackID>& rows() const { return m_rows; }
    /// How many of them nothing is writing: their write failed or was stopped.
    int leftCount() const;
    /// Writes the files of those of these rows that have such edits.
    void writeAgain(const QSet<TrackID>& ids);
    /// Has all that was noted on disk when it returns. \return false if that failed; blocks.
    bool keep();

Q_SIGNALS:
    /// rows() or leftCount() may differ.
    void changed();

private:
    void tracksChanged(const ListChange& change);
    void rowsMoved();
    /// Notes a row's edits, or that it has none any more.
    void look(const Track& row);
    void fileChanged(const FileChange& change);
    /// A file holds these fields now. Rows tell that themselves; the note of a file without a row goes here.
    void fileSettled(const QUrl& url, TagFields fields, const AudioTags& values);
    void note(const KeptEdit& edit);
    /// Hands what is not on disk yet to a worker.
    void sendNotes();
    bool noted(bool isOnDisk);
    void takeKept(const QList<KeptEdit>& kept);
    void bringBackLater();
    /// Gives edits of an earlier run to the rows of their files, as edits.
    void bringBack();
    async::Task<> read(std::stop_token stop);
    async::Task<> writeNotes(std::stop_token stop);
    async::Task<> writeUnchanged(QHash<TrackID, KeptEdit> back, std::stop_token stop);

    Dependencies m_dependencies;
    QSet<TrackID> m_rows;
    QSet<TrackID> m_away;              ///< rows that left the list with such edits
    QHash<QUrl, KeptEdit> m_noted;     ///< as the journal has it, or is about to
    QHash<QUrl, KeptEdit> m_returning; ///< of an earlier run, whose files have no row yet
    QList<KeptEdit> m_notes;           ///< not on disk yet
    quint64 m_revision = 0;            ///< of the last notes that were sent
    bool m_isRead = false;             ///< what an earlier run left is known
    bool m_isBringingBack = false;
    async::TaskSlot m_readTask;
    async::TaskSlot m_writeTask;
    async::TaskGroup m_returns{1};
};
