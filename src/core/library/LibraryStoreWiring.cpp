#include "core/library/LibraryConcerns.h"

// All calls from one concern to another, one short function per topic.

LibraryConcerns::LibraryConcerns(const LibraryServices& libraryServices)
    : services(libraryServices)
    , status(workspace, services.clock)
    , quickLists(services.preferences)
    , order(workspace, services.preferences, services.notifications)
    , selection(workspace, order)
    , playback({selection})
    , waveforms({selection, services.preloadWaveforms, services.prioritizeWaveforms})
    , favorites(favoritesDependencies())
    , tagSaver(tagSaverDependencies())
    , tagWriting(tagWritingDependencies())
    , artwork(artworkDependencies())
    , loads(loadsDependencies())
    , sending(sendingDependencies())
    , strayTemporaries({status, services.executor, services.moveToTrash})
    , imports(importsDependencies())
{
    wireUpkeep();
    wireStoppedWrites();
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
            services.executor, services.readMetadata,  services.detectBPM};
}

Sending::Dependencies LibraryConcerns::sendingDependencies()
{
    return {workspace, status,
            [this](const QList<Track>& tracks) { loads.schedule(tracks, Track::MetadataDestination::Analysis); },
            services.analyzeQuality};
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
            services.detectBPM,
            [this](const QList<QUrl>& urls) { waveforms.preloadWaveforms(urls); },
            services.analyzeQuality,
            [this](const QList<QUrl>& urls) { strayTemporaries.add(urls); }};
}
