#include "core/library/LibraryConcerns.h"

#include "platform/Localization.h"

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
    wireHistory();
    wireRemoval();
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

/// The status line names what was taken back.
void LibraryConcerns::wireHistory()
{
    const auto name = [this](const QString& text, const QString& icon) {
        return [this, text, icon](const QString& actionName) {
            status.showText(VelmoraLocalization::format(text, {actionName}), icon, WorkspaceStatus::Tone::Success);
        };
    };
    QObject::connect(&history, &History::undone, &workspace,
                     name(QStringLiteral("Отменено: %@"), QStringLiteral("arrow.uturn.backward")));
    QObject::connect(&history, &History::redone, &workspace,
                     name(QStringLiteral("Повторено: %@"), QStringLiteral("arrow.uturn.forward")));
}

/// The player moves on when its row goes. Rows that come back are read if they have not been, what was edited of them
/// is written, and their tempo is wanted.
void LibraryConcerns::wireRemoval()
{
    const auto moveOn = [this](const QSet<TrackID>& ids, const QList<Track>& rows) {
        playback.continuePlaybackAfterRemoving(ids, rows);
    };
    QObject::connect(&removal, &Removal::rowsLeft, &workspace, moveOn);
    QObject::connect(&favorites, &Favorites::rowsLeft, &workspace, moveOn);
    using List = Track::MetadataDestination;
    const auto cameBack = [this](List list, const QSet<TrackID>& ids, const QList<Track>& unread) {
        if (!unread.isEmpty())
            loads.schedule(unread, list);
        if (list != List::Library)
            return;
        QSet<TrackID> back = ids;
        for (const Track& track : unread)
            back.insert(track.id());
        for (const TrackID& id : std::as_const(back)) {
            if (const TagFields edits = tagSaver.pendingEdits(id))
                tagSaver.write(id, edits);
        }
        tempo.detectBPM(ids);
    };
    QObject::connect(&removal, &Removal::rowsCameBack, &workspace, cameBack);
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
    return {workspace, selection, status, services.notifications, services.preferences, history};
}

TagWriting::Dependencies LibraryConcerns::tagWritingDependencies()
{
    return {workspace, status, services.notifications, quickLists, tagSaver, history};
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
    return {workspace,         selection, status,     services.notifications, history,
            services.executor, fileLocks, fileEvents, services.trashCan};
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
