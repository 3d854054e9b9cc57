#include "core/library/session/Session.h"

#include "async/MainQueue.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/Order.h"
#include "core/library/playback/Playback.h"
#include "core/library/reading/MetadataLoads.h"
#include "core/library/removal/Removal.h"
#include "core/library/selection/Selection.h"
#include "core/library/session/SessionCoding.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/status/SaveReason.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/waveforms/Waveforms.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Localization.h"
#include "platform/Preferences.h"

#include <QPointer>

namespace {

using Destination = Track::MetadataDestination;
using Tone = WorkspaceStatus::Tone;

constexpr qsizetype kWaveformSlice = 1000; // chosen: two milliseconds of the main thread
constexpr double kFrame = 0.016;           // seconds
constexpr double kSaveDelay = 0.35;        // seconds without a change
constexpr double kLeftOutDuration = 12;    // seconds: it comes while the user looks at the list
constexpr double kRetryPause = 5;          // seconds; chosen: a full disk is seldom freed faster

const QString kSaveWarning = QStringLiteral("session");

/// Nothing that goes wrong with a file may keep the program from working.
std::optional<WorkspaceLoad::Result> loadQuietly(WorkspaceSessionStorage& storage, const QByteArray& legacyBytes)
{
    try {
        return WorkspaceLoad::load(storage, legacyBytes);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

Session::Session(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
    , m_checkpoints({m_dependencies.status, m_dependencies.executor, m_dependencies.storage})
{
    if (m_dependencies.storage)
        watchWorkspace();
}

Session::~Session() = default;

/// Everything that the file holds saves it when it changes.
void Session::watchWorkspace()
{
    Workspace* const workspace = &m_dependencies.workspace;
    connect(workspace, &Workspace::tracksChanged, this, &Session::scheduleWorkspaceSave);
    connect(workspace, &Workspace::sectionListChanged, this, &Session::scheduleWorkspaceSave);
    connect(workspace, &Workspace::conversionItemsChanged, this, &Session::scheduleWorkspaceSave);
    connect(workspace, &Workspace::duplicateSearchRootsChanged, this, &Session::scheduleWorkspaceSave);
    connect(workspace, &Workspace::selectionChanged, this, &Session::scheduleWorkspaceSave);
    connect(workspace, &Workspace::activeTabChanged, this, &Session::scheduleWorkspaceSave);
    connect(&m_dependencies.tempo, &Tempo::resultsChanged, this, &Session::scheduleWorkspaceSave);
    connect(&m_dependencies.tempo, &Tempo::checkpointReached, this, &Session::saveWorkspaceSessionNow);
    connect(&m_dependencies.keys, &Keys::resultsChanged, this, &Session::scheduleWorkspaceSave);
    connect(&m_dependencies.loads, &MetadataLoads::progressChanged, this, [this] {
        if (m_dependencies.loads.operationCount() == 0)
            scheduleWorkspaceSave();
    });
    // What was held back while the list scrolled comes after the last read.
    connect(&m_dependencies.loads, &MetadataLoads::settled, this, &Session::scheduleWorkspaceSave);
}

void Session::restore()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_dependencies.storage)
        return;
    m_dependencies.workspace.setRestoringWorkspaceSession(true);
    m_restoreTask.start([this](std::stop_token stop) { return restoreTask(stop); });
}

async::Task<> Session::restoreTask(std::stop_token stop)
{
    WorkspaceSessionStorage* const storage = m_dependencies.storage;
    const QByteArray legacyBytes = m_dependencies.preferences.legacyWorkspaceSession.get();
    auto job = [storage, legacyBytes](std::stop_token) { return loadQuietly(*storage, legacyBytes); };
    std::optional<WorkspaceLoad::Result> result =
        co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(job));
    if (!result || !isWorkspaceUntouched()) { // what comes now takes the place of what the file holds
        auto keep = [storage](std::stop_token) {
            WorkspaceLoad::keepReplaced(*storage);
            return true;
        };
        co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(keep));
    }
    applyWorkspaceSession(std::move(result));
}

void Session::scheduleWorkspaceSave()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_dependencies.storage || m_dependencies.workspace.isRestoringWorkspaceSession() ||
        m_dependencies.loads.isApplyingBatch())
        return;
    m_saveTask.start([this](std::stop_token stop) { return saveLater(stop); });
}

async::Task<> Session::saveLater(std::stop_token stop)
{
    co_await m_dependencies.clock.sleep(async::seconds(kSaveDelay), stop);
    saveWorkspaceSessionNow();
}

void Session::saveWorkspaceSessionNow()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_saveTask.cancel();
    m_writeTask.cancel();
    // While restoring, the workspace is not yet what the file holds: a save would destroy it.
    if (!m_dependencies.storage || m_dependencies.workspace.isRestoringWorkspaceSession())
        return;
    const SessionRecord record = makeWorkspaceSession();
    const qint64 revision = ++m_saveRevision;
    m_writeTask.start(
        [this, record, revision](std::stop_token stop) { return writeTask(record, revision, std::move(stop)); });
}

async::Task<> Session::writeTask(SessionRecord record, qint64 revision, std::stop_token stop)
{
    WorkspaceSessionStorage* const storage = m_dependencies.storage;
    async::Executor& executor = m_dependencies.executor;
    auto encoding = [record = std::move(record)](std::stop_token) { return SessionCoding::encode(record); };
    const QByteArray data = co_await executor.run(async::Priority::Utility, stop, std::move(encoding));
    if (revision != m_saveRevision)
        co_return;
    auto writing = [storage, data, revision](std::stop_token) -> std::optional<SessionStorageError> {
        try {
            storage->write(data, revision);
            return std::nullopt;
        } catch (const SessionStorageError& error) {
            return error; // the old file stands
        }
    };
    // One that a later save overtakes counts too: a slow disk would never be told of else.
    const QPointer<Session> self(this);
    const std::optional<SessionStorageError> failure =
        co_await executor.run(async::Priority::Utility, std::stop_token(), std::move(writing));
    if (self)
        self->saved(failure);
}

/// What fails once may have been a moment's trouble.
void Session::saved(const std::optional<SessionStorageError>& failure)
{
    if (!failure) {
        m_failedSaves = 0;
        m_retryTask.cancel();
        m_dependencies.status.letGo(kSaveWarning);
        return;
    }
    if (++m_failedSaves > 1)
        m_dependencies.status.hold(
            kSaveWarning,
            VelmoraLocalization::format(QStringLiteral("Список не сохраняется: %@"), {saveReason(failure->code())}));
    m_retryTask.start([this](std::stop_token stop) { return retryLater(std::move(stop)); });
}

async::Task<> Session::retryLater(std::stop_token stop)
{
    co_await m_dependencies.clock.sleep(async::seconds(kRetryPause), stop);
    saveWorkspaceSessionNow();
}

void Session::saveWorkspaceSessionSynchronouslyForTermination()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_saveTask.cancel();
    m_writeTask.cancel();
    if (!m_dependencies.storage || m_dependencies.workspace.isRestoringWorkspaceSession())
        return;
    m_dependencies.removal.settleForTheEnd();
    const qint64 revision = ++m_saveRevision;
    try {
        m_dependencies.storage->write(SessionCoding::encode(makeWorkspaceSession()), revision);
    } catch (const SessionStorageError&) {
        // The old file stands; there is nobody left to tell.
    }
}

SessionRecord Session::makeWorkspaceSession()
{
    m_dependencies.removal.settle();
    Workspace& workspace = m_dependencies.workspace;
    Selection& selection = m_dependencies.selection;
    selection.rememberSelection(workspace.activeTab());
    SessionRecord record;
    record.tracks = workspace.tracks().rows();
    record.selectedID = workspace.selectedID();
    record.selectedIDs = workspace.selectedIDs();
    record.activeTab = rawValue(workspace.activeTab());
    record.tabSelectionIDs.emplace();
    record.tabFocusedIDs.emplace();
    for (LibraryTab tab : kAllLibraryTabs) {
        const std::optional<Selection::State> state = selection.rememberedState(tab);
        if (!state)
            continue;
        record.tabSelectionIDs->insert(rawValue(tab), state->ids);
        if (state->focusedID)
            record.tabFocusedIDs->insert(rawValue(tab), *state->focusedID);
    }
    record.resumeTrackID = m_dependencies.playback.currentTrackID();
    if (!record.resumeTrackID)
        record.resumeTrackID = workspace.selectedID();
    for (const ConversionItem& item : workspace.conversionItems())
        record.conversionURLs.append(item.url);
    record.analysisTracks = workspace.analysisTracks().rows();
    record.keyAnalysisTracks = workspace.keyAnalysisTracks().rows();
    record.musicalKeyAnalyses = m_dependencies.keys.musicalKeyAnalyses();
    record.duplicateRoots = workspace.duplicateSearchRoots();
    record.duplicateTracks = workspace.duplicateTracks().rows();
    record.tempo = m_dependencies.tempo.tempoTables();
    const auto& offset = m_dependencies.preferences.playlistScrollOffset;
    if (offset.isSet())
        record.playlistScrollOffset = offset.get();
    return record;
}

bool Session::isWorkspaceUntouched() const
{
    const Workspace& workspace = m_dependencies.workspace;
    return workspace.tracks().isEmpty() && workspace.conversionItems().isEmpty() &&
           workspace.analysisTracks().isEmpty() && workspace.keyAnalysisTracks().isEmpty() &&
           workspace.duplicateTracks().isEmpty();
}

void Session::applyWorkspaceSession(std::optional<WorkspaceLoad::Result> result)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    if (!result) {
        workspace.setRestoringWorkspaceSession(false);
        return;
    }
    if (!isWorkspaceUntouched()) { // the user was faster than the disk
        if (result->isPendingRestore)
            m_dependencies.storage->discardPendingRestore();
        workspace.setRestoringWorkspaceSession(false);
        scheduleWorkspaceSave();
        return;
    }
    if (result->isPendingRestore && result->session.playlistScrollOffset) { // before the rows, which scroll there
        m_dependencies.preferences.playlistScrollOffset.set(*result->session.playlistScrollOffset);
        m_dependencies.preferences.playlistScrollAnchorTrackID.remove();
    }
    putListsInPlace(*result);
    putSelectionInPlace(*result);
    startLoads(*result);
    if (result->isPendingRestore)
        m_dependencies.storage->clearPendingAfterWrite();
    workspace.setRestoringWorkspaceSession(false);
    if (m_dependencies.loads.operationCount() == 0)
        scheduleWorkspaceSave();
    announceLeftOut(result->leftOut);
}

void Session::putListsInPlace(WorkspaceLoad::Result& result)
{
    Workspace& workspace = m_dependencies.workspace;
    SessionRecord& session = result.session;
    m_dependencies.tempo.restoreTempoTables(std::move(session.tempo));
    if (!result.tracks.isEmpty()) {
        m_dependencies.order.adopt(std::move(result.playlist), result.language);
        workspace.adoptTracks(std::move(result.tracks));
    }
    workspace.setConversionItems(std::move(result.conversionItems));
    workspace.setList(Destination::Analysis, session.analysisTracks);
    m_dependencies.keys.setMusicalKeyAnalyses(std::move(session.musicalKeyAnalyses));
    workspace.setList(Destination::MusicalKey, session.keyAnalysisTracks);
    workspace.setDuplicateSearchRoots(session.duplicateRoots);
    workspace.setList(Destination::Duplicates, session.duplicateTracks);
}

void Session::putSelectionInPlace(const WorkspaceLoad::Result& result)
{
    Selection& selection = m_dependencies.selection;
    for (LibraryTab tab : kAllLibraryTabs) {
        const WorkspaceLoad::SectionSelection section = result.selections.value(rawValue(tab));
        selection.restoreState(tab, {section.ids, section.focusedID});
    }
    const LibraryTab tab = libraryTabFromRawValue(result.session.activeTab).value_or(LibraryTab::Playlist);
    const Selection::State state = selection.selectionState(tab);
    m_dependencies.workspace.switchTo(tab, state.ids, state.focusedID);
}

void Session::startLoads(const WorkspaceLoad::Result& result)
{
    MetadataLoads& loads = m_dependencies.loads;
    const Workspace& workspace = m_dependencies.workspace;
    for (const Destination list :
         {Destination::Library, Destination::Analysis, Destination::MusicalKey, Destination::Duplicates})
        loads.schedule(workspace.list(list).rows(), list);
    if (!result.waveformURLs.isEmpty())
        m_waveformTask.start([this, urls = result.waveformURLs](std::stop_token stop) {
            return preloadInSlices(urls, std::move(stop));
        });
}

/// Entering 100,000 files at once would hold the window up for long.
async::Task<> Session::preloadInSlices(QList<QUrl> urls, std::stop_token stop)
{
    for (qsizetype first = 0; first < urls.size(); first += kWaveformSlice) {
        m_dependencies.waveforms.preloadWaveforms(urls.mid(first, kWaveformSlice));
        co_await m_dependencies.clock.sleep(async::seconds(kFrame), stop);
    }
}

void Session::announceLeftOut(int files)
{
    if (files == 0)
        return;
    m_leftOut = files;
    m_dependencies.status.showCounted(QStringLiteral("Файлы не найдены, в списках нет: %d"), {files},
                                      StatusIcon::Warning, Tone::Warning, kLeftOutDuration);
    Q_EMIT leftOutChanged();
}

void Session::listCheckpoints(std::function<void(const QList<Checkpoint>&)> listed)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (std::exchange(m_leftOut, 0) != 0)
        Q_EMIT leftOutChanged();
    m_checkpoints.list(std::move(listed));
}

void Session::restoreFromCheckpoint(const QUrl& url)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_checkpoints.open(url);
}
