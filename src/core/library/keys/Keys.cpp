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

/// The work of one analysis in the background. It ends early both when the analysis is stopped and when its owner goes.
/// Whatever goes wrong with a file, it just has no key.
std::optional<MusicalKeyAnalysis> analyzeQuietly(const Analyze& analyze, const QUrl& url, std::stop_source stop,
                                                 const std::stop_token& ownerStop)
{
    const auto forward = [&stop] { stop.request_stop(); };
    const std::stop_callback onOwnerStop(ownerStop, forward);
    if (!analyze || stop.stop_requested())
        return std::nullopt;
    try {
        return analyze(url, stop.get_token());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

Keys::Keys(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
{
    connect(&m_dependencies.workspace, &Workspace::sectionListChanged, this, &Keys::sectionChanged);
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
        if (!ids.contains(id) || m_analyzing.contains(id))
            continue;
        m_analyses.remove(id);
        m_undetermined.remove(id);
        m_pending.append(id);
        joined.insert(id);
    }
    if (joined.isEmpty())
        return;
    if (m_analyzing.isEmpty())
        m_batchTotal = 0;
    m_batchTotal += static_cast<int>(joined.size());
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

/// The row whose turn it is, still at the front of the queue.
std::optional<Track> Keys::nextTrack()
{
    while (!m_pending.isEmpty()) {
        if (const Track* row = m_dependencies.workspace.keyAnalysisTracks().find(m_pending.first()))
            return *row;
        drop({m_pending.first()});
    }
    return std::nullopt;
}

async::Task<> Keys::work(std::stop_token stop)
{
    while (!isPlaying()) {
        const std::optional<Track> track = nextTrack();
        if (!track)
            break;
        const TrackID id = track->id();
        const std::stop_source analysisStop = begin(id);
        auto job = [analyze = m_dependencies.analyze, url = track->url(),
                    analysisStop](const std::stop_token& ownerStop) {
            return analyzeQuietly(analyze, url, analysisStop, ownerStop);
        };
        const std::optional<MusicalKeyAnalysis> analysis =
            co_await m_dependencies.executor.run(async::Priority::Background, stop, std::move(job));
        if (analysisStop.stop_requested())
            break; // whoever stopped it has decided about the row
        if (isPlaying()) {
            putBack(id);
            break;
        }
        finish(id, analysis);
    }
    leave();
}

std::stop_source Keys::begin(const TrackID& id)
{
    m_pending.removeFirst();
    m_analysisStop = std::stop_source();
    setActive(id);
    return m_analysisStop;
}

void Keys::finish(const TrackID& id, const std::optional<MusicalKeyAnalysis>& analysis)
{
    m_active.reset();
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
    if (!m_active)
        return;
    m_analysisStop.request_stop();
    putBack(*m_active);
}

void Keys::dropMusicalKeyQueue()
{
    VELMORA_ASSERT_MAIN_THREAD();
    drop(QSet<TrackID>(m_analyzing));
}

/// Rows that nobody wants the key of any more.
void Keys::drop(const QSet<TrackID>& ids)
{
    if (ids.isEmpty())
        return;
    if (m_active && ids.contains(*m_active)) {
        m_analysisStop.request_stop();
        m_active.reset();
    }
    m_pending.removeIf([&ids](const TrackID& id) { return ids.contains(id); });
    m_analyzing.subtract(ids);
    m_batchTotal -= static_cast<int>(ids.size());
    emit musicalKeyStatesChanged(ids);
}

/// Rows that left the section leave the queue with it.
void Keys::sectionChanged(Destination list, const ListChange& change)
{
    if (list != Destination::MusicalKey || change.kind != ListChange::Kind::Structure)
        return;
    QSet<TrackID> gone;
    for (const TrackID& id : std::as_const(m_analyzing)) {
        if (!m_dependencies.workspace.keyAnalysisTracks().contains(id))
            gone.insert(id);
    }
    drop(gone);
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
