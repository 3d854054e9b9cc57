#include "app/ContentView.h"

#include "async/MainQueue.h"
#include "core/library/LibraryStore.h"
#include "core/library/artwork/Artwork.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/imports/Imports.h"
#include "core/library/imports/StrayTemporaries.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/Order.h"
#include "core/library/removal/Removal.h"
#include "core/library/selection/Selection.h"
#include "core/library/sending/Sending.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/tempo/TempoChoices.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"

#include <QPointer>

ContentView::ContentView(LibraryStore& library, AudioPlayer& player, Surroundings surroundings)
    : m_library(library)
    , m_player(player)
    , m_surroundings(std::move(surroundings))
{
    VELMORA_ASSERT_MAIN_THREAD();
    connect(&library.preferences(), &Preferences::changed, this, &ContentView::preferenceChanged);
    connect(&library.notifications(), &Notifications::velmoraRestartOnboarding, this, &ContentView::restartOnboarding);
    connect(&library.notifications(), &Notifications::velmoraPlaybackDidFinish, this, &ContentView::playbackDidFinish);
}

ContentView::~ContentView() = default;

void ContentView::preferenceChanged(const QString& key)
{
    Preferences& preferences = m_library.preferences();
    if (key == preferences.playlistPopularityEnabled.key() && !preferences.playlistPopularityEnabled.get())
        deactivatePopularitySort();
    if (key != preferences.appLanguage.key())
        return;
    VelmoraLocalization::setLanguage(appLanguageFromRawValue(preferences.appLanguage.get()));
    emit m_library.notifications().velmoraLanguageDidChange();
}

/// Nobody looks after ratings any more, so nothing is sorted by them.
void ContentView::deactivatePopularitySort()
{
    Order& order = m_library.order();
    if (order.trackSortField(LibraryTab::Playlist) == TrackSortField::Rating)
        order.setTrackSortField(TrackSortField::BPM, LibraryTab::Playlist);
    order.updatePlaylistPopularitySortValues({});
}

void ContentView::restartOnboarding()
{
    Preferences& preferences = m_library.preferences();
    preferences.sectionOnboardingSeen.remove();
    preferences.sectionOnboardingSteps.remove();
    preferences.sectionOnboardingSkipped.remove();
}

void ContentView::activateTab(LibraryTab tab)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_library.workspace();
    if (workspace.activeTab() == tab)
        return;
    if (tab == LibraryTab::Playlist)
        findReturnPlayback();
    if (m_surroundings.endEditing)
        m_surroundings.endEditing();
    workspace.setEditingMetadata(false);
    workspace.setSwitchingSections(true);
    m_library.selection().switchTo(tab);
    async::MainQueue::post([self = QPointer<ContentView>(this), tab] {
        if (self)
            self->afterSwitch(tab);
    });
}

void ContentView::afterSwitch(LibraryTab tab)
{
    Workspace& workspace = m_library.workspace();
    workspace.setSwitchingSections(false);
    if (tab == LibraryTab::Favorites && workspace.activeTab() == tab && workspace.selectedID())
        emit m_library.notifications().velmoraFocusFavoriteTrack(*workspace.selectedID());
}

void ContentView::receiveDroppedTracks(const QList<QUrl>& urls, LibraryTab tab)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (urls.isEmpty())
        return;
    importInto(urls, tab);
    activateTab(tab);
}

void ContentView::importInto(const QList<QUrl>& urls, LibraryTab tab)
{
    Imports& imports = m_library.imports();
    switch (tab) {
    case LibraryTab::Playlist:
        imports.importURLs(urls);
        return;
    case LibraryTab::Favorites:
        imports.importForCovers(urls, [self = QPointer<ContentView>(this)](const Imports::Outcome& outcome) {
            if (self)
                self->addImportedToFavorites(outcome);
        });
        return;
    case LibraryTab::Covers:
        imports.importForCovers(urls);
        return;
    case LibraryTab::Converter:
        imports.importForConversion(urls);
        return;
    case LibraryTab::Analysis:
        imports.importForAnalysis(urls);
        return;
    case LibraryTab::MusicalKey:
        imports.importForMusicalKeyAnalysis(urls);
        return;
    case LibraryTab::Duplicates:
        imports.importDuplicateSearchURLs(urls);
        return;
    }
}

void ContentView::addImportedToFavorites(const Imports::Outcome& outcome)
{
    const int joined = m_library.favorites().addToFavorites(QSet<TrackID>(outcome.ids.cbegin(), outcome.ids.cend()));
    m_library.imports().announceAdded(QStringLiteral("Добавлено в избранное: %d"), joined, outcome.leftOut,
                                      QStringLiteral("heart.fill"));
}

void ContentView::openSectionPanel()
{
    choose(m_library.workspace().activeTab());
}

void ContentView::choose(LibraryTab tab)
{
    if (!m_surroundings.chooseFiles)
        return;
    m_surroundings.chooseFiles(tab, [self = QPointer<ContentView>(this), tab](const QList<QUrl>& urls) {
        if (self)
            self->receiveDroppedTracks(urls, tab);
    });
}

void ContentView::select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused)
{
    m_library.selection().select(ids, focused);
}

void ContentView::toggleFavorites(const QSet<TrackID>& ids)
{
    m_library.favorites().toggleFavorites(ids);
}

void ContentView::removeFromFavorites(const QSet<TrackID>& ids)
{
    m_library.favorites().removeFromFavorites(ids, true);
}

void ContentView::removeFromCovers(const QSet<TrackID>& ids)
{
    m_library.removal().removeFromCoverWorkspace(ids);
}

void ContentView::removeFromSection(LibraryTab tab, const QSet<TrackID>& ids)
{
    Removal& removal = m_library.removal();
    switch (tab) {
    case LibraryTab::Converter:
        emit m_library.notifications().velmoraRemoveConversionItems();
        return;
    case LibraryTab::Favorites:
        removeFromFavorites(ids);
        return;
    case LibraryTab::Analysis:
        removal.removeFromAnalysis(ids);
        return;
    case LibraryTab::MusicalKey:
        removal.removeFromMusicalKeyAnalysis(ids);
        return;
    case LibraryTab::Covers:
        removeFromCovers(ids);
        return;
    case LibraryTab::Playlist:
    case LibraryTab::Duplicates:
        removal.removeTracksFromPlaylist(ids);
        return;
    }
}

void ContentView::moveToTrash(const QSet<TrackID>& ids)
{
    if (m_library.workspace().activeTab() == LibraryTab::Duplicates)
        m_library.removal().trashDuplicateTracks(ids);
    else
        m_library.removal().trashTracks(ids);
}

void ContentView::addToAnalysis(const QSet<TrackID>& ids)
{
    m_library.sending().addTracksToAnalysis(ids);
}

void ContentView::addToConversion(const QSet<TrackID>& ids)
{
    m_library.sending().addTracksToConversion(ids);
}

void ContentView::assignGenre(const QString& genre, const QSet<TrackID>& ids)
{
    m_library.tagWriting().assignGenre(genre, ids);
}

void ContentView::assignComment(const QString& comment, const QSet<TrackID>& ids)
{
    m_library.tagWriting().assignComment(comment, ids);
}

void ContentView::assignAlbum(const QString& album, const QSet<TrackID>& ids)
{
    m_library.tagWriting().assignAlbum(album, ids);
}

void ContentView::clearGenres(const QSet<TrackID>& ids)
{
    m_library.tagWriting().clearGenres(ids);
}

void ContentView::clearComments(const QSet<TrackID>& ids)
{
    m_library.tagWriting().clearComments(ids);
}

void ContentView::saveTags(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids)
{
    m_library.tagWriting().saveFields(tags, fields, ids);
}

void ContentView::assignArtwork(const QByteArray& image, const QSet<TrackID>& ids)
{
    if (m_library.workspace().artworkWritingIDs().intersects(ids))
        m_library.status().showStatus(QStringLiteral("Подождите: обложка ещё сохраняется в файл"),
                                      QStringLiteral("photo.badge.plus"), WorkspaceStatus::Tone::Warning);
    else
        m_library.artwork().assignArtwork(image, ids);
}

void ContentView::chooseArtwork(std::function<void(const QByteArray& image)> chosen)
{
    if (m_surroundings.chooseImage)
        m_surroundings.chooseImage(std::move(chosen));
}

void ContentView::restoreOriginalTags(const QSet<TrackID>& ids)
{
    m_library.tagWriting().restoreOriginalTags(ids);
}

void ContentView::detectTempoAgain(const QSet<TrackID>& ids)
{
    m_library.tempo().detectAgain(ids);
}

void ContentView::stopTempoAnalysis()
{
    m_library.tempo().dropBPMQueue();
}

void ContentView::writeTempo(const QSet<TrackID>& ids)
{
    m_library.tempoChoices().writeTempo(ids);
}

void ContentView::scaleTempo(double factor, const QSet<TrackID>& ids)
{
    m_library.tempoChoices().scaleTempo(ids, factor);
}

void ContentView::setTempo(int bpm, const QSet<TrackID>& ids)
{
    m_library.tempoChoices().setTempo(ids, bpm);
}

void ContentView::stopMovingFiles()
{
    m_library.removal().stopMoving();
}

void ContentView::cancelTagWrites()
{
    m_library.tagWriting().saver().cancelBatches();
}

void ContentView::trashStrayTemporaries()
{
    m_library.strayTemporaries().moveToTrash();
}

void ContentView::answerWhatSavesKeep(bool keepsOthers)
{
    m_library.tagWriting().saver().answerWhatSavesKeep(keepsOthers);
}

void ContentView::analyzeMusicalKey(const QSet<TrackID>& ids)
{
    m_library.keys().analyzeMusicalKey(ids);
}

void ContentView::stopMusicalKeyAnalysis()
{
    m_library.keys().dropMusicalKeyQueue();
}

void ContentView::writeAnalyzedMusicalKeys(const QSet<TrackID>& ids)
{
    m_library.keys().writeAnalyzedMusicalKeys(ids);
}

void ContentView::revealInFileManager(const QSet<TrackID>& ids)
{
    QSet<QString> folders;
    for (const Track& track : m_library.selection().visibleTracks()) {
        if (ids.contains(track.id()))
            folders.insert(FileURL::folderPath(track.url()));
    }
    for (const QString& folder : std::as_const(folders)) {
        if (m_surroundings.openFolder)
            m_surroundings.openFolder(FileURL::fromPath(folder));
    }
}

void ContentView::setPlaylistScrolling(bool scrolling)
{
    m_library.order().setPlaylistScrolling(scrolling);
}

void ContentView::setTrackSortField(TrackSortField field, LibraryTab tab)
{
    m_library.order().setTrackSortField(field, tab);
}

void ContentView::setTrackSortDirection(TrackSortDirection direction, LibraryTab tab)
{
    m_library.order().setTrackSortDirection(direction, tab);
}

void ContentView::activateFavoriteSortFromHeader(TrackSortField field)
{
    m_library.order().activateFavoriteSortFromHeader(field);
}

void ContentView::dismissNotice()
{
    m_library.workspace().setNotice(std::nullopt);
}

void ContentView::dismissLastError()
{
    m_library.workspace().setLastError(std::nullopt);
}
