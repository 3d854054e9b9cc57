#include "core/library/LibraryConcerns.h"

// All calls from one concern to another, one short function per topic.

LibraryConcerns::LibraryConcerns(const LibraryServices& libraryServices)
    : services(libraryServices)
    , status(workspace, services.clock)
    , quickLists(services.preferences)
    , order(orderDependencies())
    , selection(workspace, order)
    , playback(playbackDependencies())
    , waveforms({selection, services.preloadWaveforms, services.prioritizeWaveforms})
    , favorites(favoritesDependencies())
    , tagSaver(tagSaverDependencies())
    , tagWriting(tagWritingDependencies())
    , artwork(artworkDependencies())
    , loads(loadsDependencies())
    , tempo(tempoDependencies())
    , sending(sendingDependencies())
    , removal(removalDependencies())
    , strayTemporaries({status, services.executor, fileLocks, services.trashCan})
    , imports(importsDependencies())
    , keys(keysDependencies())
    , session(sessionDependencies())
{
    wireUpkeep();
    wireStoppedWrites();
    wireOrder();
    wireTempo();
}

LibraryConcerns::~LibraryConcerns() = default;

/// What follows every change of the main list.
void LibraryConcerns::wireUpkeep()
{
    workspace.tracksUpkeep = [this](const ListChange& change) {
        order.tracksChanged(change);
        // A batch of reads raises the revision itself, once; a star changes nothing that is analysed.
        if (!favorites.isPatchingMembership() && !loads.isApplyingBatch())
            workspace.raisePlaylistAnalysisRevision();
    };
}

/// A stopped batch leaves rows behind that differ from their files: nobody shall overlook that.
void LibraryConcerns::wireStoppedWrites()
{
    QObject::connect(&tagSaver, &TagSaver::stopped, &workspace, [this](int notWritten) {
        status.showCounted(QStringLiteral("Запись остановлена, в файлы не записано: %d"), {notWritten},
                           QStringLiteral("exclamationmark.triangle"), WorkspaceStatus::Tone::Warning);
    });
}

/// The playlist is put in order when the reading of tags has come to an end.
void LibraryConcerns::wireOrder()
{
    QObject::connect(&loads, &MetadataLoads::settled, &order, &Order::scheduleMetadataSortRefresh);
}

/// While tags are read one file at a time is analysed.
void LibraryConcerns::wireTempo()
{
    QObject::connect(&loads, &MetadataLoads::settled, &tempo, &Tempo::startBPMWorkerIfPossible);
}

/// The order is built first and asks concerns that come later; nobody calls it before they are there.
Order::Dependencies LibraryConcerns::orderDependencies()
{
    return {workspace,
            tempoResults,
            services.preferences,
            services.notifications,
            services.clock,
            [this] { return loads.isApplyingBatch(); },
            [this] { return favorites.isPatchingMembership(); },
            [this] { return loads.isBusy(); },
            [this] { return tempo.isQueueing(); },
            [this](bool scrolling) { loads.setPlaylistScrolling(scrolling); },
            [this] { tempo.startBPMWorkerIfPossible(); }};
}

Favorites::Dependencies LibraryConcerns::favoritesDependencies()
{
    return {workspace,
            selection,
            status,
            services.notifications,
            services.preferences,
            [this](const QSet<TrackID>& ids, const QList<Track>& rows) {
                playback.continuePlaybackAfterRemoving(ids, rows);
            }};
}

TagWriting::Dependencies LibraryConcerns::tagWritingDependencies()
{
    return {workspace, status, services.notifications, quickLists, tagSaver};
}

/// What is written in the background comes back to the user through the edits' concern.
TagSaver::Dependencies LibraryConcerns::tagSaverDependencies()
{
    return {workspace,
            services.preferences,
            services.executor,
            services.tagFiles,
            fileLocks,
            fileEvents,
            services.readMetadata,
            [this](const TagFileError& error) { tagWriting.reportWriteError(error); }};
}

Artwork::Dependencies LibraryConcerns::artworkDependencies()
{
    return {workspace, status, services.notifications, services.clock, services.executor, tagSaver};
}

MetadataLoads::Dependencies LibraryConcerns::loadsDependencies()
{
    return {workspace,         services.notifications, services.clock,
            services.executor, services.readMetadata,  [this](const QSet<TrackID>& ids) { tempo.detectBPM(ids); }};
}

/// Tempo analysis gives way to the player.
Playback::Dependencies LibraryConcerns::playbackDependencies()
{
    return {selection, [this](bool isPlaying, const std::optional<TrackID>& currentTrackID) {
                tempo.playbackStateDidChange(isPlaying, currentTrackID);
            }};
}

Tempo::Dependencies LibraryConcerns::tempoDependencies()
{
    return {workspace,
            order,
            tempoResults,
            status,
            tagWriting,
            fileEvents,
            services.notifications,
            services.clock,
            services.executor,
            services.analyzeBPM,
            [this] { return loads.operationCount() > 0; },
            services.bpmResourcesAreConstrained,
            [this] { session.scheduleWorkspaceSave(); },
            [this] { session.saveWorkspaceSessionNow(); },
            [this] { keys.cancelMusicalKeyAnalysis(); },
            [this] { keys.startMusicalKeyWorkerIfPossible(); },
            [this] { loads.forgetDeferredTempo(); }};
}

Sending::Dependencies LibraryConcerns::sendingDependencies()
{
    return {workspace, status,
            [this](const QList<Track>& tracks) { loads.schedule(tracks, Track::MetadataDestination::Analysis); },
            services.analyzeQuality};
}

Removal::Dependencies LibraryConcerns::removalDependencies()
{
    return {workspace,
            selection,
            status,
            services.notifications,
            services.executor,
            fileLocks,
            services.trashCan,
            [this](const QSet<TrackID>& ids, const QList<Track>& rows) {
                playback.continuePlaybackAfterRemoving(ids, rows);
            },
            [this](const QList<Track>& tracks, Track::MetadataDestination list) { loads.schedule(tracks, list); },
            [this](const TrackID& id) {
                if (const TagFields edits = tagSaver.pendingEdits(id))
                    tagSaver.write(id, edits);
            },
            [this](const QSet<TrackID>& ids) { tempo.detectBPM(ids); }};
}

Imports::Dependencies LibraryConcerns::importsDependencies()
{
    return {workspace,
            status,
            services.preferences,
            favorites,
            sending,
            services.clock,
            services.executor,
            loads,
            [this](const QSet<TrackID>& ids) { tempo.detectBPM(ids); },
            [this](const QList<QUrl>& urls) { waveforms.preloadWaveforms(urls); },
            services.analyzeQuality,
            [this](const QList<QUrl>& urls) { strayTemporaries.add(urls); }};
}

/// The analysis of quality is not there yet, so nobody takes turns.
Keys::Dependencies LibraryConcerns::keysDependencies()
{
    return {workspace,
            status,
            services.notifications,
            services.executor,
            tagSaver,
            services.analyzeMusicalKey,
            [this] { return playback.isPlaying(); },
            {},
            {},
            [this] { session.scheduleWorkspaceSave(); }};
}

Session::Dependencies LibraryConcerns::sessionDependencies()
{
    return {workspace,
            selection,
            order,
            tempo,
            status,
            services.preferences,
            loads,
            keys,
            services.clock,
            services.executor,
            services.sessionStorage,
            [this] { return playback.currentTrackID(); },
            [this](const QList<QUrl>& urls) { waveforms.preloadWaveforms(urls); }};
}
