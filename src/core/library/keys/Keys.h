#pragma once

#include "async/Executor.h"
#include "async/TaskSlot.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/model/MusicalKey.h"
#include "core/model/Track.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

struct ListChange;
class Notifications;
class StatusLine;
class Workspace;

/// The keys of the rows of the key section: a queue of analyses that runs one at a time in the background while nothing
/// plays, its results, and their way into the files. A row is new, queued, determined or undetermined; one that leaves
/// the section leaves the queue. An analysis that was stopped is waited for before another begins. Thread: main.
class Keys : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        async::Executor& executor;
        TagSaver& saver;
        /// Estimates the key of one file; called on worker threads. Gives nothing for one without a key. May be empty.
        std::function<std::optional<MusicalKeyAnalysis>(const QUrl& url, std::stop_token stop)> analyze;
        std::function<bool()> isPlaying;
        /// The analysis of quality, with which this queue takes turns; both may be empty.
        std::function<bool()> isQualityWorkerRunning;
        std::function<void()> startQualityWorkerIfPossible;
        std::function<void()> scheduleWorkspaceSave;
    };

    explicit Keys(Dependencies dependencies);
    ~Keys() override;

    /// Queues rows of the key section and forgets what was known of their keys. Rows that are queued already stay where
    /// they are.
    void analyzeMusicalKey(const QSet<TrackID>& ids);
    /// Starts the worker unless it runs, something plays, the analysis of quality runs, or nothing is queued.
    void startMusicalKeyWorkerIfPossible();
    /// Stops the analysis under way, whose row goes back to the front of the queue at once. The worker leaves when that
    /// analysis has ended.
    void cancelMusicalKeyAnalysis();
    /// Drops the queue, the analysis under way included: the user wants no more of it. Results stay.
    void dropMusicalKeyQueue();
    /// Writes the determined keys of rows as Camelot codes into their files, where nothing else changes, and into every
    /// row of these files. The status line tells the outcome when the last file is done.
    void writeAnalyzedMusicalKeys(const QSet<TrackID>& ids);

    /// Rows that were queued since the queue was last empty, and how many of them are done.
    struct Progress {
        int done = 0;
        int total = 0;
    };
    Progress progress() const { return {m_batchTotal - static_cast<int>(m_analyzing.size()), m_batchTotal}; }

    /// The results by row. They stay when a row leaves, for it may come back.
    const QHash<TrackID, MusicalKeyAnalysis>& musicalKeyAnalyses() const { return m_analyses; }
    /// Takes over the results of an earlier run.
    void setMusicalKeyAnalyses(QHash<TrackID, MusicalKeyAnalysis> analyses);
    /// Rows that are queued or being analysed.
    const QSet<TrackID>& analyzingMusicalKeyIDs() const { return m_analyzing; }
    /// Rows whose analysis gave no key.
    const QSet<TrackID>& undeterminedMusicalKeyIDs() const { return m_undetermined; }
    /// What is queued, in the order of its turn, without the row being analysed.
    const QList<TrackID>& pendingMusicalKeyTrackIDs() const { return m_pending; }
    /// The row being analysed right now; nothing while a stopped analysis comes to its end.
    const std::optional<TrackID>& activeMusicalKeyTrackID() const { return m_active; }
    /// Whether the worker runs: it goes from row to row until the queue is empty, and stays until its analysis has
    /// ended.
    bool isMusicalKeyWorkerRunning() const { return m_isWorking; }

Q_SIGNALS:
    /// The state of these rows has changed: what is queued, active, determined or undetermined.
    void musicalKeyStatesChanged(const QSet<TrackID>& ids);

private:
    std::optional<Track> nextTrack();
    async::Task<> work(std::stop_token stop);
    std::stop_source begin(const TrackID& id);
    void finish(const TrackID& id, const std::optional<MusicalKeyAnalysis>& analysis);
    void putBack(const TrackID& id);
    void drop(const QSet<TrackID>& ids);
    void sectionChanged(Track::MetadataDestination list, const ListChange& change);
    void leave();
    void setActive(const std::optional<TrackID>& id);
    bool isPlaying() const { return m_dependencies.isPlaying && m_dependencies.isPlaying(); }
    void showWritten(int written, int skipped);

    Dependencies m_dependencies;
    QHash<TrackID, MusicalKeyAnalysis> m_analyses;
    QSet<TrackID> m_analyzing; ///< pending and active
    QSet<TrackID> m_undetermined;
    QList<TrackID> m_pending;
    int m_batchTotal = 0;
    std::optional<TrackID> m_active;
    std::stop_source m_analysisStop; ///< of the analysis under way
    bool m_isWorking = false;
    async::TaskSlot m_worker; // last: stops the task before anything else goes
};
