#pragma once

#include "async/TaskSlot.h"
#include "core/library/analysis/BPMAnalysisOutcome.h"
#include "core/library/results/TempoResults.h"
#include "core/library/tempo/TempoProgress.h"
#include "core/library/tempo/TempoRequests.h"
#include "work/WorkBoard.h"
#include "work/WorkQueue.h"

#include <QObject>

class AudioAnalyser;
class MetadataLoads;
class Notifications;
class Order;
class Playback;
class TagWriting;
class Workspace;

/// What a row shows of its tempo beside its tag.
struct PlaylistBPMState {
    bool isAnalyzing = false;
    std::optional<QString> estimatedBPM;

    bool operator==(const PlaylistBPMState&) const = default;
};

/// What comes back from a worker.
struct TempoFinding {
    BPMAnalysisOutcome outcome;
    QUrl url;                                ///< the file that was analysed
    std::optional<CachedBPMEstimate> record; ///< of a success, if the file could be looked at
};

/// Tempo analysis in the background: which tracks get one, and what is found. A tag is always believed: a track that
/// has one is never analysed. Thread: main.
class Tempo : public QObject, private WorkConcern<TrackID, TempoFinding> {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Order& order;
        TempoResults& results;
        TagWriting& tagWriting;
        MetadataLoads& loads;
        Playback& playback;
        FileEvents& events;
        Notifications& notifications;
        Scheduler& scheduler;
        WorkBoard& board;
        async::Clock& clock;
        async::Executor& executor;
        AudioAnalyser& analyser;
    };

    explicit Tempo(const Dependencies& dependencies);
    ~Tempo() override;

    /// Queues tracks that have neither tag nor estimate; one whose file is unchanged since an earlier analysis gets
    /// that result instead. Many tracks are gone through in slices.
    void detectBPM(const QSet<TrackID>& ids);
    /// Queues rows without tag, those that have an estimate too: it stays until another one is found.
    void detectAgain(const QSet<TrackID>& ids);
    /// Gives up what waits and what is being analysed: the user wants no more of it. What was found stays.
    void dropBPMQueue();

    /// How far analysis is now; nothing while nothing is queued. The board shows it at most every tenth of a second.
    std::optional<WorkProgress> bpmAnalysisProgress() const;
    /// What a row shows: whether its file is being heard at this moment, and the text that was found.
    PlaylistBPMState playlistBPMState(const TrackID& id) const;
    /// Of the estimate, 0 to 1; 1 where the user chose it.
    std::optional<double> confidence(const TrackID& id) const { return m_dependencies.results.confidence(id); }
    /// Other tempos of the same rhythm, strongest first, where an analysis of this run found them.
    QList<TempoEstimate::Alternative> alternatives(const TrackID& id) const
    {
        return m_dependencies.results.alternatives(id);
    }
    /// Whether tracks wait for their tempo or are being analysed; requests that are still gone through do not count.
    bool isQueueing() const { return !m_queue.isEmpty(); }

    /// The tables that outlive the program.
    TempoTables tempoTables() const { return m_dependencies.results.tables(); }
    /// Takes the tables of a session over.
    void restoreTempoTables(TempoTables tables);

    /// Gives up the analyses of rows; their estimates stay. \return those that were queued.
    QSet<TrackID> withdraw(const QSet<TrackID>& ids);
    /// Stores or removes what is shown of a row. estimatesChosen() tells of it.
    void setEstimatedBPM(const TrackID& id, const std::optional<QString>& text);
    /// Tells of the estimates that were set since the last time: rows repaint, the order follows, the session is
    /// saved.
    void estimatesChosen();
    /// The tag tells the tempo of these rows from now on. What is known of their files stays, for the tag may go again.
    void giveUp(const QSet<TrackID>& ids);
    /// While values change in many steps nothing is sorted.
    void setChoosing(bool isChoosing);

Q_SIGNALS:
    /// At once; one signal for all rows of one operation.
    void playlistBPMStatesChanged(const QSet<TrackID>& ids);
    /// tempoTables() is worth saving.
    void resultsChanged();
    /// The same in the middle of a long batch, at most every five seconds: better now than after it.
    void checkpointReached();

private:
    WorkJob<TempoFinding> begin(const TrackID& id, const Allowance& allowance) override;
    WorkEnd finished(const TrackID& id, std::optional<TempoFinding> finding) override;
    void statesChanged(const QSet<TrackID>& ids) override;

    const Track* withoutTag(const TrackID& id) const;
    void request(const QSet<TrackID>& ids, bool again);
    async::Task<> takeRequests(std::stop_token stop);
    void enqueue(const TempoRequests::Slice& slice, const QSet<QString>& changedFiles);
    bool takeOverFileEstimate(const Track& track, const QSet<QString>& changedFiles);
    void succeeded(const TrackID& id, const TempoFinding& finding);
    void tellSaver();
    void fileChanged(const FileChange& change);
    void tagsEdited(const QSet<TrackID>& ids);
    void listChanged(const ListChange& change);
    void playerTold();
    void preferPlayed();
    void announceStates();
    void tellSearching();
    void scheduleBPMNotification();
    async::Task<> notifyLater(std::stop_token stop);

    Dependencies m_dependencies;
    TempoRequests m_requests;
    mutable TempoProgress m_progress;
    QSet<TrackID> m_changedStates; ///< not announced yet
    std::optional<async::Duration> m_lastCheckpointAt;
    bool m_isChoosing = false;
    bool m_isNotificationPending = false;
    WorkEntry m_entry;
    WorkQueue<TrackID, TempoFinding> m_queue;
    async::TaskSlot m_requestTask;
    async::TaskSlot m_notificationTask;
};
