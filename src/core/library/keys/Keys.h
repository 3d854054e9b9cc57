#pragma once

#include "core/library/keys/KeyWriting.h"
#include "core/library/results/FileResults.h"
#include "core/model/MusicalKey.h"
#include "core/model/Track.h"
#include "work/WorkBoard.h"
#include "work/WorkQueue.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <optional>

class AudioAnalyser;
struct ListChange;

/// What an analysis found in a file: its key, if it has one, and the state in which the file was.
struct KeyOfFile {
    std::optional<MusicalKeyAnalysis> analysis;
    FileStamp heard;

    const FileStamp& stamp() const { return heard; }
    void setStamp(const FileStamp& stamp) { heard = stamp; }
};

/// What comes back from a worker; the file is not known where it could not be looked at.
struct KeyFinding {
    std::optional<MusicalKeyAnalysis> analysis;
    std::optional<FileStamp> stamp;
};

/// The keys of the rows of the key section: a queue of analyses, its results, and their way into the files. A row is
/// new, queued, determined or undetermined; one that leaves the section leaves the queue. A file that was heard in this
/// run and is the same still is not decoded again for another row. Thread: main.
class Keys : public QObject, private WorkConcern<TrackID, KeyFinding> {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        Scheduler& scheduler;
        WorkBoard& board;
        async::Executor& executor;
        TagSaver& saver;
        History& history;
        FileEvents& events;
        AudioAnalyser& analyser;
    };

    explicit Keys(const Dependencies& dependencies);
    ~Keys() override;

    /// Queues rows of the key section and forgets what was known of their keys. Rows that are queued already stay where
    /// they are.
    void analyzeMusicalKey(const QSet<TrackID>& ids);
    /// Drops the queue, the analysis under way included: the user wants no more of it. Results stay.
    void dropMusicalKeyQueue();
    /// Writes the determined keys of rows as Camelot codes into their files, where nothing else changes, and into every
    /// row of these files, as one step of undo. Rows whose file could not be written have their former key again. The
    /// status line tells the outcome when the last file is done.
    void writeAnalyzedMusicalKeys(const QSet<TrackID>& ids);

    /// Rows that were queued since the queue was last empty, and how many of them are done.
    WorkProgress progress() const { return m_queue.progress(); }
    /// Where a row stands in the queue; None for one that is determined, undetermined or new.
    WorkState stateOf(const TrackID& id) const { return m_queue.stateOf(id); }
    /// Rows that wait or are being analysed.
    qsizetype queuedCount() const { return m_queue.queuedCount(); }
    /// The row being analysed right now; nothing while a stopped analysis comes to its end.
    std::optional<TrackID> activeMusicalKeyTrackID() const;

    /// The results by row. They stay when a row leaves, for it may come back.
    const QHash<TrackID, MusicalKeyAnalysis>& musicalKeyAnalyses() const { return m_analyses; }
    /// Takes over the results of an earlier run.
    void setMusicalKeyAnalyses(QHash<TrackID, MusicalKeyAnalysis> analyses);
    /// Rows whose analysis gave no key.
    const QSet<TrackID>& undeterminedMusicalKeyIDs() const { return m_undetermined; }

Q_SIGNALS:
    /// Keys that could not be written were taken back out of their rows.
    void tookBack();
    /// The state of these rows has changed: what is queued, active, determined or undetermined.
    void musicalKeyStatesChanged(const QSet<TrackID>& ids);
    /// musicalKeyAnalyses() is worth saving.
    void resultsChanged();

private:
    WorkJob<KeyFinding> begin(const TrackID& id, const Allowance& allowance) override;
    WorkEnd finished(const TrackID& id, std::optional<KeyFinding> finding) override;
    void statesChanged(const QSet<TrackID>& ids) override;

    void sectionChanged(Track::MetadataDestination list, const ListChange& change);
    void showProgress();
    void fileChanged(const FileChange& change);

    Dependencies m_dependencies;
    KeyWriting m_writing;
    QHash<TrackID, MusicalKeyAnalysis> m_analyses;
    QSet<TrackID> m_undetermined;
    FileResults<KeyOfFile> m_byFile;
    QList<FileChange> m_heard; ///< while files are being analysed
    WorkEntry m_entry;
    WorkQueue<TrackID, KeyFinding> m_queue;
};
