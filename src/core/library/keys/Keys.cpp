#include "core/library/keys/Keys.h"

#include "async/MainQueue.h"
#include "core/library/keys/KeyTagPlan.h"
#include "core/library/status/StatusLine.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"

namespace {

using Analyze = std::function<std::optional<MusicalKeyAnalysis>(const QUrl&, std::stop_token)>;
using Destination = Track::MetadataDestination;

constexpr Destination kAllLists[] = {Destination::Library, Destination::Analysis, Destination::MusicalKey,
                                     Destination::Duplicates};

/// Whatever goes wrong with a file, it just has no key.
std::optional<MusicalKeyAnalysis> analyzeQuietly(const Analyze& analyze, const QUrl& url, std::stop_token stop)
{
    try {
        return analyze ? analyze(url, std::move(stop)) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

Keys::Keys(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
{
}

Keys::~Keys() = default;

void Keys::setMusicalKeyAnalyses(QHash<TrackID, MusicalKeyAnalysis> analyses)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QSet<TrackID> changed(m_analyses.keyBegin(), m_analyses.keyEnd());
    changed.unite(QSet<TrackID>(analyses.keyBegin(), analyses.keyEnd()));
    m_analyses = std::move(analyses);
    if (!changed.isEmpty())
        emit musicalKeyStatesChanged(changed);
}

void Keys::analyzeMusicalKey(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QSet<TrackID> joined;
    for (const Track& track : m_dependencies.workspace.keyAnalysisTracks()) {
        const TrackID& id = track.id();
        if (!ids.contains(id) || m_queued.contains(id))
            continue;
        m_analyses.remove(id);
        m_undetermined.remove(id);
        m_pending.append(id);
        joined.insert(id);
    }
    if (joined.isEmpty())
        return;
    m_queued.unite(joined);
    m_analyzing.unite(joined);
    m_dependencies.scheduleWorkspaceSave();
    emit musicalKeyStatesChanged(joined);
    startMusicalKeyWorkerIfPossible();
}

void Keys::startMusicalKeyWorkerIfPossible()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const bool isQualityRunning = m_dependencies.isQualityWorkerRunning && m_dependencies.isQualityWorkerRunning();
    if (isQualityRunning || m_isWorking || isPlaying() || m_pending.isEmpty())
        return;
    m_isWorking = true;
    m_worker.start([this](std::stop_token stop) { return work(std::move(stop)); });
}

/// The row whose turn it is, still at the front of the queue. Those that left the section meanwhile are passed over.
std::optional<Track> Keys::nextTrack()
{
    QSet<TrackID> gone;
    std::optional<Track> next;
    while (!next && !m_pending.isEmpty()) {
        if (const Track* row = m_dependencies.workspace.keyAnalysisTracks().find(m_pending.first()))
            next = *row;
        else
            gone.insert(m_pending.takeFirst());
    }
    if (!gone.isEmpty()) {
        m_queued.subtract(gone);
        m_analyzing.subtract(gone);
        emit musicalKeyStatesChanged(gone);
    }
    return next;
}

async::Task<> Keys::work(std::stop_token stop)
{
    while (!isPlaying()) {
        const std::optional<Track> track = nextTrack();
        if (!track)
            break;
        const TrackID id = track->id();
        m_pending.removeFirst();
        setActive(id);
        auto job = [analyze = m_dependencies.analyze, url = track->url()](std::stop_token jobStop) {
            return analyzeQuietly(analyze, url, std::move(jobStop));
        };
        // Whoever cancels the worker puts the row back: after a stop control does not come past here.
        const std::optional<MusicalKeyAnalysis> analysis =
            co_await m_dependencies.executor.run(async::Priority::Background, stop, std::move(job));
        if (isPlaying()) {
            putBack(id);
            break;
        }
        finish(id, analysis);
    }
    leave();
}

void Keys::finish(const TrackID& id, const std::optional<MusicalKeyAnalysis>& analysis)
{
    m_active.reset();
    m_queued.remove(id);
    m_analyzing.remove(id);
    if (!analysis) {
        m_undetermined.insert(id);
    } else if (m_dependencies.workspace.keyAnalysisTracks().contains(id)) {
        m_analyses.insert(id, *analysis);
        m_undetermined.remove(id);
        m_dependencies.scheduleWorkspaceSave();
    }
    emit musicalKeyStatesChanged({id});
}

void Keys::putBack(const TrackID& id)
{
    if (!m_pending.contains(id))
        m_pending.prepend(id);
    setActive(std::nullopt);
}

void Keys::setActive(const std::optional<TrackID>& id)
{
    QSet<TrackID> changed;
    for (const std::optional<TrackID>& each : {m_active, id}) {
        if (each)
            changed.insert(*each);
    }
    m_active = id;
    emit musicalKeyStatesChanged(changed);
}

/// The analysis of quality has the next turn.
void Keys::leave()
{
    m_isWorking = false;
    if (isPlaying())
        return;
    if (m_dependencies.startQualityWorkerIfPossible)
        m_dependencies.startQualityWorkerIfPossible();
    startMusicalKeyWorkerIfPossible();
}

void Keys::cancelMusicalKeyAnalysis()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_isWorking)
        return;
    m_worker.cancel();
    if (m_active)
        putBack(*m_active);
    leave();
}

void Keys::dropMusicalKeyQueue()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QSet<TrackID> dropped = std::exchange(m_analyzing, {});
    m_pending.clear();
    m_queued.clear();
    if (!m_isWorking) {
        emit musicalKeyStatesChanged(dropped);
        return;
    }
    m_worker.cancel();
    setActive(std::nullopt);
    emit musicalKeyStatesChanged(dropped);
    leave();
}

void Keys::writeAnalyzedMusicalKeys(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    const KeyTagPlan::Plan plan = KeyTagPlan::make(workspace.keyAnalysisTracks(), workspace.tracks(), m_analyses, ids);
    if (plan.items.isEmpty()) {
        m_dependencies.status.showStatus(QStringLiteral("Нет результатов для записи"), QStringLiteral("info.circle"),
                                         WorkspaceStatus::Tone::Warning);
        return;
    }
    const QSet<TrackID> changed = KeyTagPlan::differing(workspace.tracks(), plan.codes);
    for (const Destination list : kAllLists) {
        if (auto rows = KeyTagPlan::withCodes(workspace.list(list), plan.codes, list))
            workspace.setList(list, std::move(*rows));
    }
    if (!changed.isEmpty())
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), changed);
    const int total = static_cast<int>(plan.items.size());
    m_dependencies.saver.writeBatch(plan.items, [this, total](int written) { showWritten(written, total - written); });
}

void Keys::showWritten(int written, int skipped)
{
    const QString icon = QStringLiteral("music.quarternote.3");
    if (skipped > 0)
        m_dependencies.status.showCounted(QStringLiteral("Тональность сохранена: %d · пропущено: %d"),
                                          {written, skipped}, icon, WorkspaceStatus::Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Тональность сохранена: %d"), {written}, icon,
                                          WorkspaceStatus::Tone::Success);
}
