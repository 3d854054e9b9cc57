#include "app/ContentView.h"

#include "app/commands/StoreCommands.h"
#include "async/MainQueue.h"
#include "core/library/LibraryStore.h"
#include "core/library/artwork/Artwork.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/imports/Imports.h"
#include "core/library/order/Order.h"
#include "core/library/removal/Removal.h"
#include "core/library/selection/Selection.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagWriting.h"
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
    , m_commands(library)
{
    VELMORA_ASSERT_MAIN_THREAD();
    connect(&library.preferences(), &Preferences::changed, this, &ContentView::preferenceChanged);
    connect(&library.notifications(), &Notifications::velmoraRestartOnboarding, this, &ContentView::restartOnboarding);
    connect(&library.notifications(), &Notifications::velmoraPlaybackDidFinish, this, &ContentView::playbackDidFinish);
    connect(&library.workspace(), &Workspace::restoringChanged, this, &ContentView::importWaiting);
    StoreCommands::bind(m_commands, library);
    bindCommands();
    bindPlayer();
    if (!library.preferences().playlistPopularityEnabled.get())
        deactivatePopularitySort();
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

void ContentView::importWaiting(bool isRestoring)
{
    if (isRestoring)
        return;
    const QList<Waiting> waiting = std::exchange(m_waiting, {});
    for (const Waiting& each : waiting)
        receiveDroppedTracks(each.urls, each.tab);
}

/// Rows that are there before the last session is would make it give way to them.
void ContentView::importInto(const QList<QUrl>& urls, LibraryTab tab)
{
    if (m_library.workspace().isRestoringWorkspaceSession()) {
        m_waiting.append({urls, tab});
        return;
    }
    using List = Track::MetadataDestination;
    Imports& imports = m_library.imports();
    const LibrarySection& section = LibrarySection::of(tab);
    if (section.holdsJobs)
        imports.importForConversion(urls);
    else if (section.list == List::Analysis)
        imports.importForAnalysis(urls);
    else if (section.list == List::MusicalKey)
        imports.importForMusicalKeyAnalysis(urls);
    else if (section.list == List::Duplicates)
        imports.importDuplicateSearchURLs(urls);
    else if (tab == LibraryTab::Favorites)
        imports.importForCovers(urls, [self = QPointer<ContentView>(this)](const Imports::Outcome& outcome) {
            if (self)
                self->addImportedToFavorites(outcome);
        });
    else if (tab == LibraryTab::Covers)
        imports.importForCovers(urls);
    else
        imports.importURLs(urls);
}

void ContentView::addImportedToFavorites(const Imports::Outcome& outcome)
{
    const int joined = m_library.favorites().addToFavorites(QSet<TrackID>(outcome.ids.cbegin(), outcome.ids.cend()));
    m_library.imports().announceAdded(QStringLiteral("Добавлено в избранное: %d"), joined, outcome.leftOut,
                                      StatusIcon::FavoriteAdded);
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

void ContentView::bindCommands()
{
    using ID = CommandID;
    for (LibraryTab tab : kAllLibraryTabs)
        m_commands.bind(Commands::showing(tab), [this, tab](const CommandTarget&) { activateTab(tab); });
    m_commands.bind(ID::AddFiles, [this](const CommandTarget&) { choose(LibraryTab::Playlist); });
    m_commands.bind(ID::AddFilesHere, [this](const CommandTarget&) { choose(m_library.workspace().activeTab()); });
    m_commands.bind(ID::ShowTags, [&visible = m_library.preferences().inspectorVisible](const CommandTarget&) {
        visible.set(!visible.get());
    });
    m_commands.bind(ID::Reveal, [this](const CommandTarget& target) { reveal(target.ids); });
    m_commands.bind(
        ID::AssignCover, [this](const CommandTarget& target) { chooseAndAssignCover(target.ids); },
        [this](const CommandTarget& target) -> CommandState {
            if (m_library.workspace().artworkWritingIDs().intersects(target.ids))
                return {false, QStringLiteral("Подождите: обложка ещё сохраняется в файл")};
            return {};
        });
}

void ContentView::chooseAndAssignCover(const QSet<TrackID>& ids)
{
    chooseArtwork([self = QPointer<ContentView>(this), ids](const QByteArray& image) {
        if (self)
            self->assignArtwork(image, ids);
    });
}

void ContentView::saveTags(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids)
{
    m_library.tagWriting().saveFields(tags, fields, m_library.selection().shown(ids));
}

void ContentView::assignArtwork(const QByteArray& image, const QSet<TrackID>& wanted)
{
    const QSet<TrackID> ids = m_library.selection().shown(wanted);
    if (m_library.workspace().artworkWritingIDs().intersects(ids))
        m_library.status().showStatus(QStringLiteral("Подождите: обложка ещё сохраняется в файл"), StatusIcon::Cover,
                                      WorkspaceStatus::Tone::Warning);
    else
        m_library.artwork().assignArtwork(image, ids);
}

void ContentView::chooseArtwork(std::function<void(const QByteArray& image)> chosen)
{
    if (m_surroundings.chooseImage)
        m_surroundings.chooseImage(std::move(chosen));
}

void ContentView::answerWhatSavesKeep(bool keepsOthers)
{
    m_library.tagWriting().saver().answerWhatSavesKeep(keepsOthers);
}

void ContentView::reveal(const QSet<TrackID>& ids)
{
    QSet<QString> folders;
    for (const Track& track : m_library.selection().visibleTracks()) {
        if (ids.contains(track.id()))
            folders.insert(FileURL::folderPath(track.url()));
    }
    for (const ConversionItem& item : m_library.workspace().conversionItems()) {
        if (ids.contains(item.id))
            folders.insert(FileURL::folderPath(item.url));
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

void ContentView::dismissMessage()
{
    Workspace& workspace = m_library.workspace();
    if (workspace.lastError())
        workspace.setLastError(std::nullopt);
    else
        workspace.setNotice(std::nullopt);
}
