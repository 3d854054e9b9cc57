#include "core/library/tempo/Tempo.h"

#include "async/MainQueue.h"
#include "core/library/analysis/AudioAnalyser.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/order/Order.h"
#include "core/library/playback/Playback.h"
#include "core/library/reading/MetadataLoads.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"

#include <cmath>

namespace {

using Outcome = BPMAnalysisOutcome::Case;

constexpr double kNotificationPause = 0.1; // seconds; bursts of results cost one publication
constexpr double kForcedSavePause = 5;     // seconds between two saves in the middle of a batch

/// The decimal text of a tempo, rounded to a whole number.
QString textOf(double bpm)
{
    return QString::number(std::llround(bpm));
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

/// A file that changed while it was heard, one that is still being copied say, leaves no record.
TempoFinding listen(AudioAnalyser& analyser, const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop)
{
    const std::optional<FileStamp> before = FileStamp::of(url);
    TempoFinding finding{analyser.tempo(url, mode, std::move(stop)), url, {}};
    if (finding.outcome.which == Outcome::Success) {
        const TempoEstimate& estimate = finding.outcome.estimate;
        finding.record = CachedBPMEstimate::make(url, textOf(estimate.bpm), estimate.confidence);
        if (finding.record && !(before && before->isSameFile(finding.record->stamp())))
            finding.record.reset();
    }
    return finding;
}

} // namespace

Tempo::Tempo(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_entry(dependencies.board, WorkKinds::kTempo)
    , m_queue(WorkKinds::kTempo, *this, dependencies.scheduler, dependencies.executor)
{
    m_entry.setAhead(true); // it tells of the whole list, also while it waits
    connect(&m_entry, &WorkEntry::stopRequested, this, &Tempo::dropBPMQueue);
    connect(&m_dependencies.workspace, &Workspace::tracksChanged, this, &Tempo::listChanged);
    connect(&m_dependencies.tagWriting, &TagWriting::tempoEdited, this, &Tempo::tagsEdited);
    connect(&m_dependencies.loads, &MetadataLoads::tempoWanted, this, &Tempo::detectBPM);
    connect(&m_dependencies.events, &FileEvents::changed, this, &Tempo::fileChanged);
    connect(&m_dependencies.playback, &Playback::told, this, &Tempo::playerTold);
}

Tempo::~Tempo() = default;

/// Rows that left the list leave the queue.
void Tempo::listChanged(const ListChange& change)
{
    m_progress.forget();
    if (!change.mayLackRows() || m_queue.isEmpty())
        return;
    QSet<TrackID> gone;
    for (const QList<TrackID>& keys : {m_queue.waiting(), m_queue.running()}) {
        for (const TrackID& id : keys) {
            if (!m_dependencies.workspace.tracks().contains(id))
                gone.insert(id);
        }
    }
    m_queue.withdraw(gone);
}

/// Null for a track that has gone or whose tag tells its tempo.
const Track* Tempo::withoutTag(const TrackID& id) const
{
    const Track* track = m_dependencies.workspace.tracks().find(id);
    return track && !TempoProgress::hasTag(*track) ? track : nullptr;
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
        const FileResults<CachedBPMEstimate>& files = m_dependencies.results.files();
        QList<RecordedFile> recorded;
        const bool mayTakeOver = !files.table().isEmpty() && !slice.again;
        for (const TrackID& id : mayTakeOver ? slice.ids : QList<TrackID>()) {
            const Track* track = withoutTag(id);
            if (!track || m_dependencies.results.hasEstimate(id))
                continue;
            const QString path = FileURL::standardizedPath(track->url());
            if (const CachedBPMEstimate* known = files.find(path))
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
        else if (!m_queue.isQueued(id))
            fresh.append(id);
    }
    announceStates();
    if (hasTakenOver) {
        emit resultsChanged();
        scheduleBPMNotification();
    }
    if (fresh.isEmpty())
        return;
    const std::optional<TrackID> first = m_dependencies.playback.isPlaying() ? m_dependencies.playback.currentTrackID()
                                                                             : m_dependencies.workspace.selectedID();
    if (first && fresh.contains(*first))
        m_queue.prefer({*first});
    m_queue.append(fresh);
    tellSearching();
    scheduleBPMNotification();
}

bool Tempo::takeOverFileEstimate(const Track& track, const QSet<QString>& changedFiles)
{
    TempoResults& results = m_dependencies.results;
    if (results.files().table().isEmpty())
        return false;
    const QString path = FileURL::standardizedPath(track.url());
    const CachedBPMEstimate* known = results.files().find(path);
    if (!known || changedFiles.contains(path))
        return false;
    const double confidence = known->confidence;
    setEstimatedBPM(track.id(), known->bpm);
    results.setConfidence(track.id(), confidence);
    return true;
}

WorkJob<TempoFinding> Tempo::begin(const TrackID& id, const Allowance& allowance)
{
    const Track* track = withoutTag(id);
    if (!track)
        return WorkJob<TempoFinding>::unwanted();
    const BPMAnalysisMode mode{allowance.pace == Pace::Gentle, allowance.priority == async::Priority::Background};
    return WorkJob<TempoFinding>::onWorker(
        [&analyser = m_dependencies.analyser, url = track->url(), mode](std::stop_token stop) {
            return listen(analyser, url, mode, std::move(stop));
        });
}

/// An analyser that throws is a failure like others.
WorkEnd Tempo::finished(const TrackID& id, std::optional<TempoFinding> finding)
{
    const Outcome outcome = finding ? finding->outcome.which : Outcome::RetryableFailure;
    if (outcome == Outcome::Cancelled)
        return WorkEnd::PutBack;
    if (!withoutTag(id) || outcome == Outcome::PermanentFailure)
        return WorkEnd::Done;
    if (outcome == Outcome::RetryableFailure)
        return WorkEnd::OnceMore;
    succeeded(id, *finding);
    return WorkEnd::Done;
}

void Tempo::succeeded(const TrackID& id, const TempoFinding& finding)
{
    const TempoEstimate& estimate = finding.outcome.estimate;
    TempoResults& results = m_dependencies.results;
    setEstimatedBPM(id, textOf(estimate.bpm));
    if (finding.record)
        results.files().set(FileURL::standardizedPath(finding.url), *finding.record);
    results.setConfidence(id, estimate.confidence);
    results.setAlternatives(id, estimate.alternatives);
    tellSaver();
}

void Tempo::tellSaver()
{
    const async::Duration now = m_dependencies.clock.now();
    const bool isCheckpointDue = !m_lastCheckpointAt || now - *m_lastCheckpointAt >= async::seconds(kForcedSavePause);
    if (isCheckpointDue) {
        m_lastCheckpointAt = now;
        emit checkpointReached();
    } else if (m_queue.waiting().isEmpty()) {
        emit resultsChanged();
    }
}

/// Where the music in the file is the same, what was known of it holds on.
void Tempo::fileChanged(const FileChange& change)
{
    if (m_dependencies.results.files().follow(change))
        emit resultsChanged();
}

/// A tempo that is typed is believed; where it is taken out, what is heard shall show.
void Tempo::tagsEdited(const QSet<TrackID>& ids)
{
    QSet<TrackID> told;
    QSet<TrackID> untold;
    for (const TrackID& id : ids) {
        if (m_dependencies.workspace.tracks().contains(id))
            (withoutTag(id) ? untold : told).insert(id);
    }
    if (!told.isEmpty())
        giveUp(told);
    detectBPM(untold);
}

void Tempo::giveUp(const QSet<TrackID>& ids)
{
    withdraw(ids);
    for (const TrackID& id : ids)
        setEstimatedBPM(id, std::nullopt);
    estimatesChosen();
}

QSet<TrackID> Tempo::withdraw(const QSet<TrackID>& ids)
{
    QSet<TrackID> queued;
    for (const TrackID& id : m_queue.isEmpty() ? QSet<TrackID>() : ids) {
        if (m_queue.isQueued(id))
            queued.insert(id);
    }
    m_queue.withdraw(queued);
    return queued;
}

void Tempo::estimatesChosen()
{
    announceStates();
    scheduleBPMNotification();
    emit resultsChanged();
}

void Tempo::setChoosing(bool isChoosing)
{
    m_isChoosing = isChoosing;
    tellSearching();
    scheduleBPMNotification();
}

void Tempo::dropBPMQueue()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_requestTask.cancel();
    m_requests = {};
    m_dependencies.loads.forgetDeferredTempo();
    m_queue.drop();
    scheduleBPMNotification();
}

void Tempo::playerTold()
{
    if (m_dependencies.playback.isPlaying())
        preferPlayed();
    else
        m_queue.prefer({});
}

/// The track that plays comes first, where others are being analysed anyway.
void Tempo::preferPlayed()
{
    const std::optional<TrackID>& played = m_dependencies.playback.currentTrackID();
    const bool isWanted = played && withoutTag(*played) && !m_queue.isEmpty() &&
                          (m_queue.isQueued(*played) || !m_dependencies.results.hasEstimate(*played));
    m_queue.prefer(isWanted ? QList<TrackID>{*played} : QList<TrackID>());
    if (isWanted && !m_queue.append({*played}).isEmpty())
        scheduleBPMNotification();
}

void Tempo::restoreTempoTables(TempoTables tables)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_progress.forget();
    m_dependencies.order.adoptTempoTables(std::move(tables));
}

void Tempo::setEstimatedBPM(const TrackID& id, const std::optional<QString>& text)
{
    const bool had = m_dependencies.results.hasEstimate(id);
    m_dependencies.order.setEstimatedBPM(id, text);
    if (had != text.has_value()) {
        if (const Track* track = m_dependencies.workspace.tracks().find(id))
            m_progress.estimateChanged(*track, text.has_value());
    }
    m_changedStates.insert(id);
}

PlaylistBPMState Tempo::playlistBPMState(const TrackID& id) const
{
    return {m_queue.stateOf(id) == WorkState::Running, m_dependencies.results.estimate(id)};
}

void Tempo::statesChanged(const QSet<TrackID>& ids)
{
    m_changedStates.unite(ids);
    tellSearching();
    announceStates();
    scheduleBPMNotification();
}

void Tempo::announceStates()
{
    const QSet<TrackID> changed = std::exchange(m_changedStates, {});
    if (!changed.isEmpty())
        emit playlistBPMStatesChanged(changed);
}

void Tempo::tellSearching()
{
    m_dependencies.order.setSearchingTempo(isQueueing() || m_isChoosing);
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
    m_entry.show(bpmAnalysisProgress().value_or(WorkProgress()));
    m_dependencies.order.settleBPMSort();
    emit m_dependencies.notifications.velmoraBPMDidChange();
}

std::optional<WorkProgress> Tempo::bpmAnalysisProgress() const
{
    if (!isQueueing())
        return std::nullopt;
    return m_progress.of(m_dependencies.workspace.tracks(), m_dependencies.results, m_queue.progress());
}
