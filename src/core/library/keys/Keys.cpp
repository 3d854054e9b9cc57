#include "core/library/keys/Keys.h"

#include "async/MainQueue.h"
#include "core/library/analysis/AudioAnalyser.h"
#include "core/library/keys/KeyTagPlan.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/status/StatusLine.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"

namespace {

using Destination = Track::MetadataDestination;

constexpr Destination kAllLists[] = {Destination::Library, Destination::Analysis, Destination::MusicalKey,
                                     Destination::Duplicates};

/// The state of the file is looked at first: one that is rewritten meanwhile does not pass for what was heard.
KeyFinding listen(AudioAnalyser& analyser, const QUrl& url, const std::optional<KeyOfFile>& known, std::stop_token stop)
{
    const std::optional<FileStamp> stamp = FileStamp::of(url);
    if (known && stamp && known->heard.isSameFile(*stamp))
        return {known->analysis, stamp};
    return {analyser.musicalKey(url, std::move(stop)), stamp};
}

} // namespace

/// A batch of keys on their way into the files.
struct Keys::WrittenKeys {
    KeyTagPlan::Codes codes;
    QHash<TrackID, QUrl> files; ///< by the row that is saved
    QHash<Destination, KeyTagPlan::Former> former;
};

Keys::Keys(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_entry(dependencies.board, WorkKinds::kMusicalKey)
    , m_queue(WorkKinds::kMusicalKey, *this, dependencies.scheduler, dependencies.executor)
{
    connect(&m_entry, &WorkEntry::stopRequested, this, &Keys::dropMusicalKeyQueue);
    connect(&m_dependencies.events, &FileEvents::changed, this,
            [this](const FileChange& change) { m_byFile.follow(change); });
    connect(&m_dependencies.workspace, &Workspace::sectionListChanged, this, &Keys::sectionChanged);
    connect(&m_dependencies.workspace, &Workspace::activeTabChanged, this, &Keys::showProgress);
}

Keys::~Keys() = default;

std::optional<TrackID> Keys::activeMusicalKeyTrackID() const
{
    const QList<TrackID> running = m_queue.running();
    return running.isEmpty() ? std::nullopt : std::optional(running.first());
}

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
    QList<TrackID> fresh;
    for (const Track& track : m_dependencies.workspace.keyAnalysisTracks()) {
        const TrackID& id = track.id();
        if (!ids.contains(id) || m_queue.isQueued(id))
            continue;
        m_analyses.remove(id);
        m_undetermined.remove(id);
        fresh.append(id);
    }
    if (m_queue.append(fresh).isEmpty())
        return;
    emit resultsChanged();
    statesChanged({fresh.cbegin(), fresh.cend()});
}

void Keys::dropMusicalKeyQueue()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_queue.drop();
}

WorkJob<KeyFinding> Keys::begin(const TrackID& id, const Allowance&)
{
    const Track* row = m_dependencies.workspace.keyAnalysisTracks().find(id);
    if (!row)
        return WorkJob<KeyFinding>::unwanted();
    const KeyOfFile* known = m_byFile.find(FileURL::standardizedPath(row->url()));
    return WorkJob<KeyFinding>::onWorker([&analyser = m_dependencies.analyser, url = row->url(),
                                          known = known ? std::optional(*known) : std::nullopt](std::stop_token stop) {
        return listen(analyser, url, known, std::move(stop));
    });
}

/// A file that cannot be analysed just has no key.
WorkEnd Keys::finished(const TrackID& id, std::optional<KeyFinding> finding)
{
    const Track* row = m_dependencies.workspace.keyAnalysisTracks().find(id);
    if (!row || !finding || !finding->analysis) {
        m_undetermined.insert(id);
        return WorkEnd::Done;
    }
    if (finding->stamp)
        m_byFile.set(FileURL::standardizedPath(row->url()), {finding->analysis, *finding->stamp});
    m_analyses.insert(id, *finding->analysis);
    m_undetermined.remove(id);
    emit resultsChanged();
    return WorkEnd::Done;
}

void Keys::statesChanged(const QSet<TrackID>& ids)
{
    showProgress();
    emit musicalKeyStatesChanged(ids);
}

/// Keys were asked for, tempos come unasked; but keys that wait for the end of playing tell something new in their own
/// section alone, where the user looks for a way to stop them.
void Keys::showProgress()
{
    m_entry.setAhead(!m_queue.running().isEmpty() || m_dependencies.workspace.activeTab() == LibraryTab::MusicalKey);
    m_entry.show(m_queue.progress());
}

/// Rows that left the section leave the queue with it.
void Keys::sectionChanged(Destination list, const ListChange& change)
{
    if (list != Destination::MusicalKey || change.kind != ListChange::Kind::Structure || m_queue.isEmpty())
        return;
    QSet<TrackID> gone = m_queue.queued();
    for (const Track& row : m_dependencies.workspace.keyAnalysisTracks())
        gone.remove(row.id());
    m_queue.withdraw(gone);
}

void Keys::writeAnalyzedMusicalKeys(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    const KeyTagPlan::Plan plan = KeyTagPlan::make(workspace.keyAnalysisTracks(), workspace.tracks(), m_analyses, ids);
    if (plan.items.isEmpty()) {
        m_dependencies.status.showStatus(QStringLiteral("Нет результатов для записи"), StatusIcon::Info,
                                         WorkspaceStatus::Tone::Warning);
        return;
    }
    WrittenKeys keys{plan.codes, {}, {}};
    for (const TagSaver::Item& item : plan.items)
        keys.files.insert(item.track.id(), item.track.url());
    const QSet<TrackID> changed = KeyTagPlan::differing(workspace.tracks(), plan.codes);
    for (const Destination list : kAllLists) {
        keys.former.insert(list, KeyTagPlan::present(workspace.list(list), plan.codes));
        if (auto rows = KeyTagPlan::withCodes(workspace.list(list), plan.codes, list))
            workspace.setList(list, std::move(*rows));
    }
    if (!changed.isEmpty())
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), changed);
    m_dependencies.saver.writeBatch(
        plan.items, [this, keys](const TagSaver::Outcome& outcome) { written(keys, outcome.notWritten); });
}

/// A key that did not come to its file is no key in the tag.
void Keys::written(const WrittenKeys& keys, const QSet<TrackID>& notWritten)
{
    QSet<QUrl> files;
    QSet<TrackID> changed;
    Workspace& workspace = m_dependencies.workspace;
    for (const TrackID& id : notWritten) {
        files.insert(keys.files.value(id));
        if (const std::optional<int> place = workspace.tracks().indexOfURL(keys.files.value(id)))
            changed.insert(workspace.tracks().at(*place).id());
    }
    for (const Destination list : kAllLists) {
        if (auto rows = KeyTagPlan::takenBack(workspace.list(list), keys.codes, keys.former.value(list), files))
            workspace.setList(list, std::move(*rows));
    }
    if (!changed.isEmpty())
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), changed);
    showWritten(static_cast<int>(keys.files.size() - notWritten.size()), static_cast<int>(notWritten.size()));
}

void Keys::showWritten(int written, int skipped)
{
    const StatusIcon icon = StatusIcon::Key;
    if (skipped > 0)
        m_dependencies.status.showCounted(QStringLiteral("Тональность сохранена: %d · пропущено: %d"),
                                          {written, skipped}, icon, WorkspaceStatus::Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Тональность сохранена: %d"), {written}, icon,
                                          WorkspaceStatus::Tone::Success);
}
