#include "core/library/tempo/Tempo.h"

#include "async/MainQueue.h"
#include "core/library/files/FileEvents.h"
#include "core/library/order/Order.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"

namespace {

constexpr double kNotificationPause = 0.1; // seconds; bursts of results cost one publication
constexpr double kForcedSavePause = 5;     // seconds between two saves in the middle of a batch

bool isTrue(const std::function<bool()>& question)
{
    return question && question();
}

void call(const std::function<void()>& listener)
{
    if (listener)
        listener();
}

bool hasTag(const Track& track)
{
    return !QStringView(track.tags().bpm).trimmed().isEmpty();
}

/// A file and the estimate that is kept for it.
struct RecordedFile {
    QUrl url;
    QString path;
    CachedBPMEstimate estimate;
};

/// Paths of the files that are not what was analysed any more.
QSet<QString> changedFiles(const QList<RecordedFile>& files, const std::stop_token& stop)
{
    QSet<QString> changed;
    for (const RecordedFile& file : files) {
        if (stop.stop_requested())
            break;
        if (!file.estimate.matches(file.url))
            changed.insert(file.path);
    }
    return changed;
}

} // namespace

Tempo::Tempo(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
    , m_workers(workersDependencies())
    , m_recordTasks(1)
{
    connect(&m_dependencies.workspace, &Workspace::tracksChanged, this, [this] { m_rowCount.reset(); });
    connect(&m_dependencies.tagWriting, &TagWriting::tempoEdited, this, &Tempo::tagsEdited);
    connect(&m_dependencies.events, &FileEvents::changed, this, &Tempo::fileChanged);
}

Tempo::~Tempo() = default;

BPMWorkers::Dependencies Tempo::workersDependencies()
{
    return {m_dependencies.clock,
            m_dependencies.executor,
            m_queue,
            m_dependencies.analyzeBPM,
            [this] { return currentBPMSchedulingPolicy(); },
            [this] { return m_isPlaying; },
            [this](const TrackID& id) {
                const Track* track = withoutTag(id);
                return track ? std::optional(track->url()) : std::nullopt;
            },
            [this](const TrackID& id, const QUrl& url, const BPMAnalysisResult& result) { finished(id, url, result); },
            [this](const TrackID& id) {
                stateChanged(id);
                announceStates();
                scheduleBPMNotification();
            }};
}

BPMAnalysisSchedulingPolicy Tempo::currentBPMSchedulingPolicy() const
{
    return BPMScheduling::currentBPMSchedulingPolicy(
        {m_isPlaying, m_dependencies.order.playlistIsScrolling(), isTrue(m_dependencies.isLoadingMetadata),
         isTrue(m_dependencies.bpmResourcesAreConstrained), m_queue.size()});
}

/// Null for a track that has gone or whose tag tells its tempo.
const Track* Tempo::withoutTag(const TrackID& id) const
{
    const Track* track = m_dependencies.workspace.tracks().find(id);
    return track && !hasTag(*track) ? track : nullptr;
}

void Tempo::detectBPM(const QSet<TrackID>& ids)
{
    request(ids, false);
}

void Tempo::detectAgain(const QSet<TrackID>& ids)
{
    request(ids, true);
}

void Tempo::request(const QSet<TrackID>& ids, bool again)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_requests.add(ids, again);
    if (!m_requests.isEmpty() && !m_requestTask.isActive())
        m_requestTask.start([this](std::stop_token stop) { return takeRequests(stop); });
}

/// Whether files are unchanged is asked in the background: a volume may sleep, and there may be many.
async::Task<> Tempo::takeRequests(std::stop_token stop)
{
    while (!m_requests.isEmpty()) {
        const TempoRequests::Slice slice = m_requests.next(m_dependencies.workspace.tracks());
        QList<RecordedFile> recorded;
        const bool mayTakeOver = m_dependencies.results.knowsFiles() && !slice.again;
        for (const TrackID& id : mayTakeOver ? slice.ids : QList<TrackID>()) {
            const Track* track = withoutTag(id);
            if (!track || m_dependencies.results.hasEstimate(id))
                continue;
            const QString path = FileURL::standardizedPath(track->url());
            if (const CachedBPMEstimate* known = m_dependencies.results.ofFile(path))
                recorded.append({track->url(), path, *known});
        }
        QSet<QString> changed;
        if (!recorded.isEmpty()) {
            auto job = [recorded](const std::stop_token& jobStop) { return changedFiles(recorded, jobStop); };
            changed = co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job));
        }
        enqueue(slice, changed);
        if (!m_requests.isEmpty())
            co_await m_dependencies.clock.sleep({}, stop);
    }
}

/// Those that want another estimate keep the one they have until it is found.
void Tempo::enqueue(const TempoRequests::Slice& slice, const QSet<QString>& changedFiles)
{
    QList<TrackID> fresh;
    bool hasTakenOver = false;
    for (const TrackID& id : slice.ids) {
        const Track* track = withoutTag(id);
        if (!track || (!slice.again && m_dependencies.results.hasEstimate(id)))
            continue;
        if (!slice.again && takeOverFileEstimate(*track, changedFiles))
            hasTakenOver = true;
        else if (!m_queue.contains(id) && m_dependencies.analyzeBPM)
            fresh.append(id);
    }
    announceStates();
    if (hasTakenOver) {
        call(m_dependencies.scheduleWorkspaceSave);
        scheduleBPMNotification();
    }
    if (fresh.isEmpty())
        return;
    m_queue.append(fresh);
    const std::optional<TrackID>& selected = m_dependencies.workspace.selectedID();
    if (!m_isPlaying && selected && fresh.contains(*selected))
        m_queue.setPriority(selected);
    scheduleBPMNotification();
    startBPMWorkerIfPossible();
}

bool Tempo::takeOverFileEstimate(const Track& track, const QSet<QString>& changedFiles)
{
    TempoResults& results = m_dependencies.results;
    if (!results.knowsFiles())
        return false;
    const QString path = FileURL::standardizedPath(track.url());
    const CachedBPMEstimate* known = results.ofFile(path);
    if (!known || changedFiles.contains(path))
        return false;
    const double confidence = known->confidence;
    setEstimatedBPM(track.id(), known->bpm);
    results.setConfidence(track.id(), confidence);
    return true;
}

void Tempo::finished(const TrackID& id, const QUrl& url, const BPMAnalysisResult& result)
{
    using Case = BPMAnalysisOutcome::Case;
    const bool isWanted = withoutTag(id);
    if (isWanted && result.outcome.which == Case::RetryableFailure && m_queue.retryLater(id))
        return;
    m_queue.drop(id);
    if (isWanted && result.outcome.which == Case::Success)
        succeeded(id, url, result);
}

void Tempo::succeeded(const TrackID& id, const QUrl& url, const BPMAnalysisResult& result)
{
    const TempoEstimate& estimate = result.outcome.estimate;
    TempoResults& results = m_dependencies.results;
    setEstimatedBPM(id, BPMWorkers::textOf(estimate.bpm));
    if (result.record)
        results.setOfFile(FileURL::standardizedPath(url), *result.record);
    results.setConfidence(id, estimate.confidence);
    results.setAlternatives(id, estimate.alternatives);
    const async::Duration now = m_dependencies.clock.now();
    const bool isSaveDue =
        !m_lastBPMWorkspaceCheckpointAt || now - *m_lastBPMWorkspaceCheckpointAt >= async::seconds(kForcedSavePause);
    if (isSaveDue) {
        m_lastBPMWorkspaceCheckpointAt = now;
        call(m_dependencies.saveWorkspaceSessionNow);
    } else if (m_queue.waiting().isEmpty()) {
        call(m_dependencies.scheduleWorkspaceSave);
    }
}

/// Where the music in the file is the same, what was known of it holds on.
void Tempo::fileChanged(const FileChange& change)
{
    if (!change.isSoundSame || !change.before || !change.after)
        return;
    const CachedBPMEstimate* known = m_dependencies.results.ofFile(FileURL::standardizedPath(change.former));
    if (!known || !change.before->isSameFile({known->byteCount, known->modificationDate}))
        return;
    const CachedBPMEstimate renewed{known->bpm, known->confidence, change.after->byteCount,
                                    change.after->modificationDate};
    m_dependencies.results.setOfFile(FileURL::standardizedPath(change.url), renewed);
    call(m_dependencies.scheduleWorkspaceSave);
}

void Tempo::restoreTempoTables(TempoTables tables)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_rowCount.reset();
    m_dependencies.order.adoptTempoTables(std::move(tables));
}

void Tempo::setEstimatedBPM(const TrackID& id, const std::optional<QString>& text)
{
    const bool had = m_dependencies.results.hasEstimate(id);
    m_dependencies.order.setEstimatedBPM(id, text);
    if (m_rowCount && had != text.has_value()) {
        const Track* track = withoutTag(id);
        if (track && track->isInPlaylist())
            m_rowCount->completed += text ? 1 : -1;
    }
    stateChanged(id);
}

PlaylistBPMState Tempo::playlistBPMState(const TrackID& id) const
{
    return {m_workers.isAnalyzing(id), m_dependencies.results.estimate(id)};
}

void Tempo::stateChanged(const TrackID& id)
{
    m_changedStates.insert(id);
}

void Tempo::announceStates()
{
    const QSet<TrackID> changed = std::exchange(m_changedStates, {});
    if (!changed.isEmpty())
        emit playlistBPMStatesChanged(changed);
}

void Tempo::scheduleBPMNotification()
{
    if (std::exchange(m_isNotificationPending, true))
        return;
    m_notificationTask.start([this](std::stop_token stop) { return notifyLater(stop); });
}

async::Task<> Tempo::notifyLater(std::stop_token stop)
{
    co_await m_dependencies.clock.sleep(async::seconds(kNotificationPause), stop);
    m_isNotificationPending = false;
    if (m_progressState.update(bpmAnalysisProgress()))
        emit progressChanged();
    m_dependencies.order.settleBPMSort();
    emit m_dependencies.notifications.velmoraBPMDidChange();
}

std::optional<BPMAnalysisProgress> Tempo::bpmAnalysisProgress() const
{
    if (!isQueueing())
        return std::nullopt;
    if (!m_rowCount)
        countRows();
    if (m_rowCount->completed < m_rowCount->total) // else others are queued
        return BPMAnalysisProgress{m_rowCount->completed, m_rowCount->total};
    const qsizetype done = std::max<qsizetype>(m_queue.batchTotal() - m_queue.size(), 0);
    return BPMAnalysisProgress{static_cast<int>(done), static_cast<int>(m_queue.batchTotal())};
}

void Tempo::countRows() const
{
    RowCount count;
    for (const Track& track : m_dependencies.workspace.tracks()) {
        if (!track.isInPlaylist())
            continue;
        ++count.total;
        if (hasTag(track) || m_dependencies.results.hasEstimate(track.id()))
            ++count.completed;
    }
    m_rowCount = count;
}
