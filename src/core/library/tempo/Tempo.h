#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskSlot.h"
#include "core/library/tempo/BPMAnalysisProgress.h"
#include "core/library/tempo/BPMQueue.h"
#include "core/library/tempo/BPMWorkers.h"
#include "core/library/tempo/TempoRequests.h"
#include "core/library/tempo/TempoResults.h"

#include <QObject>

#include <functional>

struct FileChange;
class FileEvents;
class Notifications;
class Order;
class StatusLine;
class TagWriting;
class Workspace;

/// What a row shows of its tempo beside its tag.
struct PlaylistBPMState {
    bool isAnalyzing = false;
    std::optional<QString> estimatedBPM;

    bool operator==(const PlaylistBPMState&) const = default;
};

/// Tempo analysis in the background: which tracks get one, when and how gently, and what the user makes of the results.
/// A tag is always believed: a track that has one is never analysed. Playback comes first: running analyses are stopped
/// and begun again more gently when it starts. Thread: main.
class Tempo : public QObject {
    Q_OBJECT

public:
    /// Questions and calls to others; an empty one is "no" or nobody.
    struct Dependencies {
        Workspace& workspace;
        Order& order;
        TempoResults& results;
        StatusLine& status;
        TagWriting& tagWriting;
        FileEvents& events;
        Notifications& notifications;
        async::Clock& clock;
        async::Executor& executor;
        /// Empty where nothing is estimated: nothing is queued then.
        BPMWorkers::Analyzer analyzeBPM;
        std::function<bool()> isLoadingMetadata;
        /// Whether power is low or the machine is hot.
        std::function<bool()> bpmResourcesAreConstrained;
        std::function<void()> scheduleWorkspaceSave;
        std::function<void()> saveWorkspaceSessionNow;
        /// Playing starts: the analyses of quality and key stop, and their workers with them.
        std::function<void()> cancelQuietAnalyses;
        /// Playing stopped a while ago: the worker for quality starts, then that for keys.
        std::function<void()> startQuietAnalyses;
        /// Nobody asks any more for the tempo of rows that wait for the playlist to come to rest.
        std::function<void()> forgetDeferredRequests = {};
    };

    explicit Tempo(Dependencies dependencies);
    ~Tempo() override;

    /// Queues tracks that have neither tag nor estimate; one whose file is unchanged since an earlier analysis gets
    /// that result instead. Many tracks are gone through in slices.
    void detectBPM(const QSet<TrackID>& ids);
    /// Follows the player: analyses become gentle when it starts, the track it plays comes first, and they speed up
    /// again when it stops.
    void playbackStateDidChange(bool isPlaying, const std::optional<TrackID>& currentTrackID);
    /// Starts as many workers as tracks wait and circumstances allow.
    void startBPMWorkerIfPossible() { m_workers.startBPMWorkerIfPossible(); }

    /// How far analysis is now; nothing while nothing is queued.
    std::optional<BPMAnalysisProgress> bpmAnalysisProgress() const;
    /// What was published last, at most every tenth of a second.
    const BPMAnalysisProgressState& bpmAnalysisProgressState() const { return m_progressState; }
    PlaylistBPMState playlistBPMState(const TrackID& id) const;
    /// Of the estimate, 0 to 1; 1 where the user chose it.
    std::optional<double> confidence(const TrackID& id) const { return m_dependencies.results.confidence(id); }
    /// Other tempos of the same rhythm, strongest first, where an analysis of this run found them.
    QList<TempoEstimate::Alternative> alternatives(const TrackID& id) const
    {
        return m_dependencies.results.alternatives(id);
    }
    /// Whether tracks wait for their tempo or are being analysed.
    bool isQueueing() const { return !m_queue.isEmpty(); }

    /// Queues rows without tag, those that have an estimate too: it stays until another one is found.
    void detectAgain(const QSet<TrackID>& ids);
    /// Gives up what waits and what is being analysed: the user wants no more of it. What was found stays.
    void dropBPMQueue();
    /// Writes the estimates as whole numbers into the tags, as one step of undo; a row whose write begins loses its
    /// estimate, for the tag is believed. Those whose file could not be written get it back. Says at the end how many
    /// were written, or at once that there is none.
    void writeTempo(const QSet<TrackID>& ids);
    /// Makes what is shown (the estimate, else the number in the tag) times a factor the estimate, as a whole number.
    /// Rows that would get less than 20 or more than 400 keep what they have.
    void scaleTempo(const QSet<TrackID>& ids, double factor);
    /// Makes a tempo from 20 to 400 the estimate of rows, with full confidence.
    void setTempo(const QSet<TrackID>& ids, int bpm);

    /// The tables that outlive the program.
    const TempoTables& tempoTables() const { return m_dependencies.results.tables(); }
    /// Takes the tables of a session over.
    void restoreTempoTables(TempoTables tables);

Q_SIGNALS:
    /// At once; one signal for all rows of one operation.
    void playlistBPMStatesChanged(const QSet<TrackID>& ids);
    /// bpmAnalysisProgressState() differs.
    void progressChanged();

private:
    struct ChosenFile;
    struct TakenEstimate;
    using TakenEstimates = QHash<TrackID, TakenEstimate>;

    BPMWorkers::Dependencies workersDependencies();
    BPMAnalysisSchedulingPolicy currentBPMSchedulingPolicy() const;
    const Track* withoutTag(const TrackID& id) const;

    void request(const QSet<TrackID>& ids, bool again);
    async::Task<> takeRequests(std::stop_token stop);
    void enqueue(const TempoRequests::Slice& slice, const QSet<QString>& changedFiles);
    bool takeOverFileEstimate(const Track& track, const QSet<QString>& changedFiles);
    void finished(const TrackID& id, const QUrl& url, const BPMAnalysisResult& result);
    void fileChanged(const FileChange& change);
    void succeeded(const TrackID& id, const QUrl& url, const BPMAnalysisResult& result);
    void setEstimatedBPM(const TrackID& id, const std::optional<QString>& text);

    static QSet<TrackID> idsOf(const TakenEstimates& taken);
    void tempoWritten(TakenEstimates& step, const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack);
    void tagsEdited(const QSet<TrackID>& ids);
    void giveUp(const QSet<TrackID>& ids);
    void giveBack(const TakenEstimates& taken);
    void chooseTempos(const QHash<TrackID, int>& tempos);
    void record(const QSet<TrackID>& ids);
    static QList<std::optional<CachedBPMEstimate>> recordsOf(const QList<ChosenFile>& files);
    async::Task<> recordFiles(QList<ChosenFile> files, std::stop_token stop);
    void withdraw(const QSet<TrackID>& ids);
    void estimatesChosen();

    void prioritizeBPMAnalysisForPlayback(const std::optional<TrackID>& trackID);
    async::Task<bool> workersGone(std::stop_token stop);
    async::Task<> resumePlaying(std::stop_token stop);
    async::Task<> resumeStopped(std::stop_token stop);

    void stateChanged(const TrackID& id);
    void announceStates();
    void scheduleBPMNotification();
    async::Task<> notifyLater(std::stop_token stop);
    void countRows() const;

    /// Rows of the playlist, and those of them that have a tempo.
    struct RowCount {
        int total = 0;
        int completed = 0;
    };

    Dependencies m_dependencies;
    BPMQueue m_queue;
    TempoRequests m_requests;
    bool m_isPlaying = false;
    BPMAnalysisProgressState m_progressState;
    mutable std::optional<RowCount> m_rowCount; ///< nothing while the list differs from what was counted
    QSet<TrackID> m_changedStates;              ///< not announced yet
    std::optional<async::Duration> m_lastBPMWorkspaceCheckpointAt;
    bool m_isNotificationPending = false;
    BPMWorkers m_workers;
    async::TaskSlot m_requestTask;
    async::TaskSlot m_notificationTask;
    async::TaskSlot m_resumeTask; ///< after a change of playback
    async::TaskGroup m_recordTasks;
};
