#include "core/library/tempo/BPMWorkers.h"

#include <QUuid>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int kManyTasks = std::numeric_limits<int>::max(); // the policy bounds the workers, not the group
constexpr int kSkipsPerTurn = 500;                          // chosen: a fraction of a millisecond each turn

/// The work of one analysis in the background. It ends early both when the analysis is stopped and when its owner goes.
BPMAnalysisResult analyze(const BPMWorkers::Analyzer& analyzer, const QUrl& url, const BPMAnalysisMode& mode,
                          std::stop_source stop, const std::stop_token& ownerStop)
{
    const auto forward = [&stop] { stop.request_stop(); };
    const std::stop_callback onOwnerStop(ownerStop, forward);
    BPMAnalysisResult result;
    if (stop.stop_requested())
        return result;
    try {
        result.outcome = analyzer(url, mode, stop.get_token());
    } catch (const std::exception&) {
        result.outcome.which = BPMAnalysisOutcome::Case::RetryableFailure;
    }
    if (result.outcome.which == BPMAnalysisOutcome::Case::Success) {
        const TempoEstimate& estimate = result.outcome.estimate;
        result.record = CachedBPMEstimate::make(url, BPMWorkers::textOf(estimate.bpm), estimate.confidence);
    }
    return result;
}

} // namespace

struct BPMWorkers::Worker {
    QUuid id = QUuid::createUuid();
    bool isCancelled = false;
};

struct BPMWorkers::Analysis {
    TrackID id;
    QUrl url;
    BPMAnalysisMode mode;
    std::stop_source stop;
};

BPMWorkers::BPMWorkers(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
    , m_restart({m_dependencies.clock, m_dependencies.isPlaying, [this] { return isRunning(); },
                 [this] { startBPMWorkerIfPossible(); }})
    , m_tasks(kManyTasks)
{
}

BPMWorkers::~BPMWorkers() = default;

QString BPMWorkers::textOf(double bpm)
{
    return QString::number(std::llround(bpm));
}

void BPMWorkers::startBPMWorkerIfPossible()
{
    const qsizetype room = m_dependencies.policy().workerLimit - m_workers.size();
    for (qsizetype left = std::min(m_dependencies.queue.waiting().size(), room); left > 0; --left) {
        const auto worker = std::make_shared<Worker>();
        m_workers.insert(worker->id, worker);
        m_tasks.add([this, worker](std::stop_token stop) { return run(worker, stop); });
    }
}

async::Task<> BPMWorkers::run(WorkerPtr worker, std::stop_token stop)
{
    int skips = 0;
    while (!worker->isCancelled &&
           !BPMScheduling::leavesAsSurplus(worker->id, m_workers.keys(), m_dependencies.policy().workerLimit)) {
        const std::optional<TrackID> id = m_dependencies.queue.takeNext();
        if (!id)
            break;
        const std::optional<QUrl> url = m_dependencies.wantedFile(*id);
        if (!url) {
            m_dependencies.queue.drop(*id);
            m_dependencies.changed(*id);
            if (++skips % kSkipsPerTurn == 0)
                co_await m_dependencies.clock.sleep({}, stop);
            continue;
        }
        const AnalysisPtr analysis = begin(*id, *url);
        const async::Priority priority =
            analysis->mode.decoderLowPriority ? async::Priority::Background : async::Priority::Utility;
        auto job = [analyzer = m_dependencies.analyze, analysis](const std::stop_token& ownerStop) {
            return analyze(analyzer, analysis->url, analysis->mode, analysis->stop, ownerStop);
        };
        const BPMAnalysisResult result = co_await m_dependencies.executor.run(priority, stop, std::move(job));
        if (!end(*worker, analysis, result))
            break;
    }
    leave(worker);
}

BPMWorkers::AnalysisPtr BPMWorkers::begin(const TrackID& id, const QUrl& url)
{
    const BPMAnalysisSchedulingPolicy policy = m_dependencies.policy();
    const auto analysis = std::make_shared<Analysis>();
    analysis->id = id;
    analysis->url = url;
    analysis->mode = {policy.lowImpact, policy.decoderLowPriority};
    m_active.insert(id, analysis);
    m_dependencies.changed(id);
    return analysis;
}

/// \return whether the worker goes on.
bool BPMWorkers::end(const Worker& worker, const AnalysisPtr& analysis, const BPMAnalysisResult& result)
{
    const TrackID& id = analysis->id;
    if (m_active.value(id) != analysis)
        return false; // forgotten, and perhaps begun anew since
    m_active.remove(id);
    const bool isStopped = worker.isCancelled || analysis->stop.stop_requested() ||
                           result.outcome.which == BPMAnalysisOutcome::Case::Cancelled;
    if (isStopped)
        m_dependencies.queue.requeueAtFront(id);
    else
        m_dependencies.finished(id, analysis->url, result);
    m_dependencies.changed(id);
    return !isStopped;
}

void BPMWorkers::leave(const WorkerPtr& worker)
{
    m_workers.remove(worker->id);
    if (m_dependencies.queue.waiting().isEmpty())
        return;
    if (worker->isCancelled)
        scheduleBPMWorkerRestart();
    else
        startBPMWorkerIfPossible();
}

void BPMWorkers::cancelActiveBPMWorkers()
{
    const QList<AnalysisPtr> analyses = m_active.values();
    for (const AnalysisPtr& analysis : analyses)
        analysis->stop.request_stop();
    for (const WorkerPtr& worker : std::as_const(m_workers))
        worker->isCancelled = true;
}

void BPMWorkers::scheduleBPMWorkerRestart()
{
    if (!m_dependencies.queue.waiting().isEmpty() || isAnalyzingAny())
        m_restart.schedule();
}

void BPMWorkers::forget(const QSet<TrackID>& ids)
{
    for (const TrackID& id : ids) {
        if (const AnalysisPtr analysis = m_active.take(id)) {
            analysis->stop.request_stop();
            m_dependencies.changed(id);
        }
    }
}

bool BPMWorkers::hasAnalysis(bool lowImpact) const
{
    return std::ranges::any_of(m_active,
                               [=](const AnalysisPtr& analysis) { return analysis->mode.lowImpact == lowImpact; });
}
