#include "app/ContentView.h"
#include "support/FakeAudio.h"
#include "support/Pictures.h"
#include "support/StoreFixture.h"

#include "playback/AudioPlayer.h"

class ContentViewTest : public StoreFixture {
protected:
    ContentViewTest()
        : audioPlayer({clock, executor, preferences, notifications, audio})
        , view(*store, audioPlayer, surroundings())
    {
    }

    ContentView::Surroundings surroundings()
    {
        return {[this] { ++editsEnded; },
                [this](LibraryTab tab, std::function<void(const QList<QUrl>&)> chosen) {
                    panelTab = tab;
                    chosen({panelAnswer});
                },
                [this](const QUrl& url) { opened.append(url); }};
    }

    bool perform(CommandID id, const QSet<TrackID>& rows = {}) { return view.commands().perform(id, {.ids = rows}); }

    int editsEnded = 0;
    LibraryTab panelTab = LibraryTab::Duplicates;
    QUrl panelAnswer;
    QList<QUrl> opened;
    FakeAudioSystem audio{clock};
    AudioPlayer audioPlayer;
    ContentView view;
};

TEST_F(ContentViewTest, ASectionSwitchKeepsEachSelection)
{
    const Track a = favorite(QStringLiteral("a.mp3"));
    fill({a, b});
    view.select(ids({a, b}), b.id());
    workspace().setEditingMetadata(true);
    QSignalSpy focus(&notifications, &Notifications::velmoraFocusFavoriteTrack);

    view.activateTab(LibraryTab::Favorites);
    EXPECT_EQ(editsEnded, 1);
    EXPECT_FALSE(workspace().isEditingMetadata());
    EXPECT_TRUE(workspace().isSwitchingSections());
    EXPECT_TRUE(workspace().selectedIDs().isEmpty());
    view.select(ids({a}), a.id());
    async::MainQueue::drain();
    EXPECT_FALSE(workspace().isSwitchingSections());

    view.activateTab(LibraryTab::Playlist);
    EXPECT_EQ(workspace().selectedIDs(), ids({a, b}));
    EXPECT_EQ(workspace().selectedID(), b.id());
    async::MainQueue::drain();
    focus.clear();
    view.activateTab(LibraryTab::Favorites);
    EXPECT_EQ(focus.size(), 0) << "on the next turn only";
    async::MainQueue::drain();
    ASSERT_EQ(focus.size(), 1);
    EXPECT_EQ(focus.first().first().toUuid(), a.id());
}

TEST_F(ContentViewTest, RowsThatTheSectionDoesNotShowAreNotEdited)
{
    const Track shown = track(QStringLiteral("shown.mp3"));
    Track hidden = track(QStringLiteral("hidden.mp3"));
    hidden.setIsInPlaylist(false);
    hidden.setIsInCoverWorkspace(true);
    fill({shown, hidden});
    const QByteArray picture = Pictures::plain({8, 8}, 0xffff0000, "PNG");
    AudioTags tags;
    tags.title = QStringLiteral("New");
    view.saveTags(tags, TagField::Title, ids({shown, hidden}));
    EXPECT_EQ(now(shown).tags().title, QStringLiteral("New"));
    EXPECT_NE(now(hidden).tags().title, QStringLiteral("New"));
    executor.runAll();
    view.assignArtwork(picture, ids({hidden}));
    executor.runOne();
    EXPECT_TRUE(workspace().artworkWritingIDs().isEmpty());
    view.assignArtwork(picture, ids({shown, hidden}));
    executor.runOne();
    EXPECT_EQ(workspace().artworkWritingIDs(), ids({shown}));
    executor.runAll();
}

TEST_F(ContentViewTest, TheActiveSectionAgainDoesNothing)
{
    QSignalSpy switched(&workspace(), &Workspace::activeTabChanged);
    view.activateTab(LibraryTab::Playlist);
    EXPECT_EQ(editsEnded, 0);
    EXPECT_EQ(switched.size(), 0);
    EXPECT_FALSE(workspace().isSwitchingSections());
}

TEST_F(ContentViewTest, DropsGoToTheirSection)
{
    const QUrl url = file(QStringLiteral("a.mp3"));
    const std::pair<LibraryTab, std::function<qsizetype()>> cases[] = {
        {LibraryTab::Favorites, [&] { return store->order().favoriteTracks().size(); }},
        {LibraryTab::Covers, [&] { return store->order().coverTracks().size(); }},
        {LibraryTab::Converter, [&] { return workspace().conversionItems().size(); }},
        {LibraryTab::Analysis, [&] { return qsizetype(workspace().analysisTracks().size()); }},
        {LibraryTab::MusicalKey, [&] { return qsizetype(workspace().keyAnalysisTracks().size()); }},
        {LibraryTab::Duplicates, [&] { return qsizetype(workspace().duplicateTracks().size()); }},
        {LibraryTab::Playlist, [&] { return store->order().playlistTracks().size(); }},
    };
    for (const auto& [tab, count] : cases) {
        SCOPED_TRACE(qPrintable(rawValue(tab)));
        fill({});
        view.receiveDroppedTracks({url}, tab);
        EXPECT_EQ(workspace().activeTab(), tab);
        settle();
        EXPECT_EQ(count(), 1);
        if (tab == LibraryTab::Favorites) {
            EXPECT_TRUE(store->order().playlistTracks().isEmpty());
            EXPECT_EQ(statusText(), QStringLiteral("Добавлено в избранное: 1"));
            store->history().undo();
            EXPECT_EQ(count(), 0);
        }
    }
    view.receiveDroppedTracks({}, LibraryTab::Covers);
    EXPECT_EQ(workspace().activeTab(), LibraryTab::Playlist) << "a drop of nothing activates nothing";
}

TEST_F(ContentViewTest, WhatIsDroppedBeforeTheSessionIsBackComesBehindIt)
{
    workspace().setRestoringWorkspaceSession(true);
    view.receiveDroppedTracks({file(QStringLiteral("a.mp3"))}, LibraryTab::Playlist);
    settle();
    EXPECT_TRUE(workspace().tracks().isEmpty());
    workspace().setRestoringWorkspaceSession(false);
    settle();
    EXPECT_EQ(workspace().tracks().size(), 1);
}

TEST_F(ContentViewTest, RowsLeaveTheSectionShownAndComeBackByUndo)
{
    const Track a = favorite(QStringLiteral("a.mp3"));
    using List = Track::MetadataDestination;
    const std::pair<LibraryTab, qsizetype> cases[] = {
        {LibraryTab::Playlist, 0},   {LibraryTab::Favorites, 0},
        {LibraryTab::Covers, 1}, // a favourite refuses
        {LibraryTab::Analysis, 0},   {LibraryTab::MusicalKey, 0},
        {LibraryTab::Duplicates, 2}, // a look at files, not a list to be weeded
    };
    for (const auto& [tab, left] : cases) {
        SCOPED_TRACE(qPrintable(rawValue(tab)));
        store->history().clear();
        fill({a, b});
        for (const List list : {List::Analysis, List::MusicalKey, List::Duplicates})
            workspace().setList(list, {track(QStringLiteral("x.mp3")), track(QStringLiteral("y.mp3"))});
        view.activateTab(tab);
        settle();
        const QStringList before = titles(store->selection().visibleTracks());
        perform(CommandID::Remove, ids(store->selection().visibleTracks()));
        EXPECT_EQ(store->selection().visibleTracks().size(), left);
        if (left > 0)
            continue;
        ASSERT_TRUE(store->history().canUndo());
        store->history().undo();
        EXPECT_EQ(titles(store->selection().visibleTracks()), before);
    }
    QSignalSpy asked(&notifications, &Notifications::velmoraRemoveConversionItems);
    view.activateTab(LibraryTab::Converter);
    perform(CommandID::Remove);
    EXPECT_EQ(asked.size(), 1) << "the converter has a selection of its own";
}

TEST_F(ContentViewTest, TheTrashTakesTheRowsOfTheSectionShown)
{
    const Track twin = a.withID(freshID());
    fill({a});
    workspace().setList(Track::MetadataDestination::Duplicates, {twin});
    view.activateTab(LibraryTab::Duplicates);
    EXPECT_FALSE(perform(CommandID::Trash, ids({a})));
    settle();
    EXPECT_TRUE(trashCan.asked.isEmpty()) << "no row of this section";
    EXPECT_TRUE(perform(CommandID::Trash, ids({twin})));
    settle();
    EXPECT_EQ(trashCan.asked, QList<QUrl>{a.url()});
}

TEST_F(ContentViewTest, ThePanelFillsTheSectionShown)
{
    panelAnswer = file(QStringLiteral("a.flac"));
    view.activateTab(LibraryTab::MusicalKey);
    perform(CommandID::AddFilesHere);
    settle();
    EXPECT_EQ(panelTab, LibraryTab::MusicalKey);
    EXPECT_EQ(workspace().keyAnalysisTracks().size(), 1);
    perform(CommandID::AddFiles);
    settle();
    EXPECT_EQ(panelTab, LibraryTab::Playlist) << "the menu's command fills the playlist";
    EXPECT_EQ(store->order().playlistTracks().size(), 1);
}

TEST_F(ContentViewTest, TheLanguageFollowsItsPreference)
{
    QSignalSpy told(&notifications, &Notifications::velmoraLanguageDidChange);
    preferences.appLanguage.set(QStringLiteral("en"));
    EXPECT_EQ(VelmoraLocalization::language(), AppLanguage::English);
    EXPECT_EQ(told.size(), 1);
    preferences.appAppearance.set(QStringLiteral("light"));
    EXPECT_EQ(told.size(), 1);
    preferences.appLanguage.set(QStringLiteral("ru"));
}

TEST_F(ContentViewTest, OnboardingStartsOver)
{
    preferences.sectionOnboardingSeen.set(QStringLiteral("x"));
    preferences.sectionOnboardingSteps.set(QStringLiteral("y"));
    preferences.sectionOnboardingSkipped.set(true);
    emit notifications.velmoraRestartOnboarding();
    EXPECT_FALSE(preferences.sectionOnboardingSeen.isSet() || preferences.sectionOnboardingSteps.isSet() ||
                 preferences.sectionOnboardingSkipped.isSet());
}

TEST_F(ContentViewTest, RevealsEachFolderOnce)
{
    const Track a = track(QStringLiteral("/m/x/a.mp3"));
    const Track b = track(QStringLiteral("/m/x/b.mp3"));
    const Track c = track(QStringLiteral("/m/y/c.mp3"));
    fill({a, b, c});
    perform(CommandID::Reveal, ids({a, b}));
    EXPECT_EQ(opened, QList<QUrl>({FileURL::fromPath(QStringLiteral("/m/x"))}));
}

TEST_F(ContentViewTest, AStartWithoutRatingsIsNotSortedByThem)
{
    preferences.playlistPopularityEnabled.set(false);
    store->order().setTrackSortField(TrackSortField::Rating, LibraryTab::Playlist);
    const ContentView again(*store, audioPlayer, surroundings());
    EXPECT_EQ(store->order().trackSortField(LibraryTab::Playlist), TrackSortField::BPM);
}

TEST_F(ContentViewTest, WithoutRatingsNothingStaysSortedByThem)
{
    Order& order = store->order();
    fill({a, b});
    preferences.playlistPopularityEnabled.set(true);
    order.setTrackSortField(TrackSortField::Rating, LibraryTab::Playlist);
    const TrackID last = order.playlistTracks().last().id();
    TrackPopularitySortValue hit;
    hit.tier = 3;
    order.updatePlaylistPopularitySortValues({{last, hit}});
    ASSERT_EQ(order.playlistTracks().first().id(), last);

    preferences.playlistPopularityEnabled.set(false);
    EXPECT_EQ(order.trackSortField(LibraryTab::Playlist), TrackSortField::BPM);
    order.setTrackSortField(TrackSortField::Rating, LibraryTab::Playlist);
    EXPECT_EQ(order.playlistTracks().last().id(), last) << "the values are forgotten";
}
