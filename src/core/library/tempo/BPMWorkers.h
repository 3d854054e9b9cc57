#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "core/library/tempo/BPMAnalysisOutcome.h"
#include "core/library/tempo/BPMQueue.h"
#include "core/library/tempo/BPMScheduling.h"
#include "core/library/tempo/BPMWorkerRestart.h"
#include "core/library/tempo/TempoTables.h"

#include <QUrl>

#include <functional>
#include <memory>

/// What one analysis brought back.
struct BPMAnalysisResult {
    BPMAnalysisOutcome outcome;
    std::optional<CachedBPMEstimate> record; ///< of a success, if the file could be looked at
};

/// Runs the analyses of a queue, one or two at a time: each worker takes track after track and waits for its analysis
/// in the background. A worker that is stopped puts its track back to the front and stays until its analysis has ended;
/// only then others begin. Thread: main.
class BPMWorkers {
public:
    /// Estimates one file; called on worker threads.
    using Analyzer = std::function<BPMAnalysisOutcome(const QUrl&, const BPMAnalysisMode&, std::stop_token)>;

    struct Dependencies {
        async::Clock& clock;
        async::Executor& executor;
        BPMQueue& queue;
        Analyzer analyze;
        std::function<BPMAnalysisSchedulingPolicy()> policy;
        std::function<bool()> isPlaying;
        /// The file to analyse; nothing if the track has gone or has a tag by now.
        std::function<std::optional<QUrl>(const TrackID&)> wantedFile;
        /// Takes a result over that nobody stopped, and puts the track back or ends it in the queue. \param url the
        /// file that was analysed.
        std::function<void(const TrackID&, const QUrl& url, const BPMAnalysisResult&)> finished;
        /// An analysis of the track began or ended, or the track left the queue.
        std::function<void(const TrackID&)> changed;
    };

    explicit BPMWorkers(Dependencies dependencies);
    ~BPMWorkers();
    BPMWorkers(const BPMWorkers&) = delete;
    BPMWorkers& operator=(const BPMWorkers&) = delete;

    /// Starts as many workers as tracks wait and the policy allows.
    void startBPMWorkerIfPossible();
    /// Asks all analyses and all workers to stop. They go by themselves.
    void cancelActiveBPMWorkers();
    /// Starts workers again once those of now have gone; nothing if nothing waits or runs.
    void scheduleBPMWorkerRestart();
    /// Stops the analyses of tracks whose result nobody wants any more; they are not put back.
    void forget(const QSet<TrackID>& ids);

    bool isAnalyzing(const TrackID& id) const { return m_active.contains(id); }
    bool isAnalyzingAny() const { return !m_active.isEmpty(); }
    /// Whether an analysis runs that is as gentle, or as ungentle, as that.
    bool hasAnalysis(bool lowImpact) const;
    bool isRunning() const { return !m_workers.isEmpty(); }

    /// The decimal text of a tempo, rounded to a whole number.
    static QString textOf(double bpm);

private:
    struct Worker;
    struct Analysis;
    using WorkerPtr = std::shared_ptr<Worker>;
    using AnalysisPtr = std::shared_ptr<Analysis>;

    async::Task<> run(WorkerPtr worker, std::stop_token stop);
    AnalysisPtr begin(const TrackID& id, const QUrl& url);
    bool end(const Worker& worker, const AnalysisPtr& analysis, const BPMAnalysisResult& result);
    void leave(const WorkerPtr& worker);

    Dependencies m_dependencies;
    QHash<QUuid, WorkerPtr> m_workers;
    QHash<TrackID, AnalysisPtr> m_active;
    BPMWorkerRestart m_restart;
    async::TaskGroup m_tasks;
};
