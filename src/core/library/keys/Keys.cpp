#include "core/library/keys/Keys.h"

#include "async/MainQueue.h"
#include "core/library/analysis/AudioAnalyser.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"

namespace {

using Destination = Track::MetadataDestination;

/// The state of the file is looked at first: one that is rewritten meanwhile does not pass for what was heard.
KeyFinding listen(AudioAnalyser& analyser, const QUrl& url, const std::optional<KeyOfFile>& known, std::stop_token stop)
{
    const std::optional<FileStamp> stamp = FileStamp::of(url);
    if (known && stamp && known->heard.isSameFile(*stamp))
        return {known->analysis, stamp};
    return {analyser.musicalKey(url, std::move(stop)), stamp};
}

} // namespace

Keys::Keys(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_writing({dependencies.workspace, dependencies.status, dependencies.notifications, dependencies.saver,
                 dependencies.history})
    , m_entry(dependencies.board, WorkKinds::kMusicalKey)
    , m_queue(WorkKinds::kMusicalKey, *this, dependencies.scheduler, dependencies.executor)
{
    connect(&m_writing, &KeyWriting::tookBack, this, &Keys::tookBack);
    connect(&m_entry, &WorkEntry::stopRequested, this, &Keys::dropMusicalKeyQueue);
    connect(&m_dependencies.events, &FileEvents::changed, this, &Keys::fileChanged);
    connect(&m_dependencies.workspace, &Workspace::sectionListChanged, this, &Keys::sectionChanged);
    connect(&m_dependencies.workspace, &Workspace::activeTabChanged, this, &Keys::showProgress);
}

Keys::~Keys() = default;

/// What is being heard takes part once it is known.
void Keys::fileChanged(const FileChange& change)
{
    m_byFile.follow(change);
    if (m_queue.running().isEmpty())
        m_heard.clear();
    else
        m_heard.append(change);
}

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
        const bool wasKnown = m_analyses.remove(id);
        if (m_undetermined.remove(id) || wasKnown)
            m_byFile.remove(FileURL::standardizedPath(track.url())); // it is to be heard again
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
    for (const FileChange& change : std::as_const(m_heard))
        m_byFile.follow(change);
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
    if (list != Destination::MusicalKey || !change.mayLackRows() || m_queue.isEmpty())
        return;
    QSet<TrackID> gone = m_queue.queued();
    for (const Track& row : m_dependencies.workspace.keyAnalysisTracks())
        gone.remove(row.id());
    m_queue.withdraw(gone);
}

void Keys::writeAnalyzedMusicalKeys(const QSet<TrackID>& ids)
{
    m_writing.write(m_analyses, ids);
}
