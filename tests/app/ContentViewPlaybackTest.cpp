#include "app/ContentView.h"
#include "app/LibraryPlayer.h"
#include "support/FakeAudio.h"
#include "support/StoreFixture.h"

#include "playback/AudioPlayer.h"

namespace {

class ContentViewPlaybackTest : public StoreFixture {
protected:
    ContentViewPlaybackTest()
        : audioPlayer({clock, executor, preferences, notifications, audio})
        , libraryPlayer(audioPlayer)
        , view(*store, audioPlayer, {})
    {
        store->playback().setPlayer(&libraryPlayer);
        fill(rows);
    }

    void focus(const std::optional<Track>& track)
    {
        view.select(track ? ids({*track}) : QSet<TrackID>(), track ? std::optional(track->id()) : std::nullopt);
    }
    void perform(CommandID id, const QSet<TrackID>& rows = {}) { view.commands().perform(id, {.ids = rows}); }
    enum class Player { Idle, Opening, Playing, Paused };
    /// Brings the player into a state.
    void bring(Player state, const Track& track)
    {
        audioPlayer.stopAndClear();
        if (state != Player::Idle)
            audioPlayer.play(track);
        if (state != Player::Opening)
            executor.runAll();
        if (state == Player::Paused)
            audioPlayer.toggle();
    }
    /// Name of the current track, "‖" in front when it does not play; empty without one.
    QString playing() const
    {
        const std::optional<Track>& track = audioPlayer.currentTrack();
        if (!track)
            return {};
        return (audioPlayer.isPlaying() ? QString() : QStringLiteral("‖")) + track->displayTitle();
    }
    QString focused()
    {
        const std::optional<TrackID>& id = workspace().selectedID();
        return id ? workspace().tracks().find(*id)->displayTitle() : QString();
    }

    const Track a = favorite(QStringLiteral("a.mp3"));
    const Track c = favorite(QStringLiteral("c.mp3"));
    const QList<Track> rows = {a, b, c};
    FakeAudioSystem audio{clock};
    AudioPlayer audioPlayer;
    LibraryPlayer libraryPlayer;
    ContentView view;
};

} // namespace

TEST_F(ContentViewPlaybackTest, TheNextRowFollowsACompletion)
{
    const struct {
        LibraryTab tab;
        Track finished;
        const char* playing;
        const char* focused; ///< b before
        int shown;
    } cases[] = {
        {LibraryTab::Playlist, a, "b", "b", 0},   {LibraryTab::Playlist, c, "‖c", "b", 0},
        {LibraryTab::Favorites, a, "c", "c", 1},  {LibraryTab::Favorites, b, "‖b", "b", 0},
        {LibraryTab::Covers, a, "c", "c", 0},     {LibraryTab::Analysis, a, "‖a", "b", 0},
        {LibraryTab::Converter, a, "‖a", "b", 0}, {LibraryTab::Duplicates, a, "‖a", "b", 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(qPrintable(rawValue(test.tab) + u' ' + test.finished.displayTitle()));
        workspace().setActiveTab(test.tab);
        workspace().setSelection(ids({a, b}), b.id());
        bring(Player::Playing, test.finished);
        QSignalSpy shown(&notifications, &Notifications::velmoraFocusFavoriteTrack);
        audio.last()->finish();
        executor.runAll();
        EXPECT_EQ(playing(), QString::fromUtf8(test.playing));
        EXPECT_EQ(focused(), QString::fromUtf8(test.focused));
        EXPECT_EQ(shown.size(), test.shown);
        const bool goesOn = audioPlayer.currentID() != test.finished.id();
        EXPECT_EQ(workspace().selectedIDs(), goesOn ? QSet<TrackID>({*workspace().selectedID()}) : ids({a, b}));
    }
}

TEST_F(ContentViewPlaybackTest, ThePlayKey)
{
    const struct {
        const char* name;
        Player state;
        Track played;
        std::optional<Track> focusedTrack;
        const char* playing;
    } cases[] = {
        {"nothing at all", Player::Idle, a, {}, ""},
        {"a row", Player::Idle, a, b, "b"},
        {"the current row", Player::Playing, b, b, "‖b"},
        {"another row", Player::Playing, a, b, "b"},
        {"no row", Player::Playing, a, {}, "‖a"},
        {"the row being opened", Player::Opening, b, b, "‖b"},
        {"another while opening", Player::Opening, a, b, "b"},
        {"no row while opening", Player::Opening, a, {}, "‖a"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        bring(test.state, test.played);
        focus(test.focusedTrack);
        perform(CommandID::PlayPause);
        executor.runAll();
        EXPECT_EQ(playing(), QString::fromUtf8(test.playing));
    }
}

TEST_F(ContentViewPlaybackTest, StepsThroughTheRows)
{
    struct Case {
        const char* name;
        LibraryTab tab;
        std::optional<Track> from;
        Player state;
        Track track; ///< of the player
        int offset;
        const char* focused;
        const char* playing;
    };
    const LibraryTab list = LibraryTab::Playlist;
    const Case cases[] = {
        {"down", list, a, Player::Idle, a, 1, "b", ""},
        {"up", list, c, Player::Idle, a, -1, "b", ""},
        {"beyond the end", list, c, Player::Playing, c, 1, "c", "c"},
        {"beyond the beginning", list, a, Player::Playing, a, -1, "a", "a"},
        {"what plays goes along", list, a, Player::Playing, a, 1, "b", "b"},
        {"what is being opened too", list, a, Player::Opening, a, 1, "b", "b"},
        {"a pause stays", list, a, Player::Paused, a, 1, "b", "‖a"},
        {"onto what plays", list, a, Player::Playing, b, 1, "b", "b"},
        {"from what plays", list, {}, Player::Playing, a, 1, "b", "b"},
        {"from what pauses", list, {}, Player::Paused, b, 1, "c", "‖b"},
        {"from nowhere", list, {}, Player::Idle, a, 1, "a", ""},
        {"from nowhere up", list, {}, Player::Idle, a, -1, "c", ""},
        {"among favourites", LibraryTab::Favorites, a, Player::Playing, a, 1, "c", "c"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        workspace().setActiveTab(test.tab);
        focus(test.from);
        bring(test.state, test.track);
        QSignalSpy shown(&notifications, &Notifications::velmoraFocusFavoriteTrack);
        perform(test.offset < 0 ? CommandID::PreviousTrack : CommandID::NextTrack);
        executor.runAll();
        EXPECT_EQ(focused(), QString::fromUtf8(test.focused));
        EXPECT_EQ(workspace().selectedIDs(), QSet<TrackID>({*workspace().selectedID()}));
        EXPECT_EQ(playing(), QString::fromUtf8(test.playing));
        EXPECT_EQ(shown.size(), test.tab == LibraryTab::Favorites ? 1 : 0);
    }
}

TEST_F(ContentViewPlaybackTest, SectionsWithListsOfTheirOwnStepThemselves)
{
    focus(b);
    bring(Player::Playing, b);
    QSignalSpy inConverter(&notifications, &Notifications::velmoraNavigateConversionItems);
    QSignalSpy inDuplicates(&notifications, &Notifications::velmoraNavigateDuplicateItems);
    workspace().setActiveTab(LibraryTab::Converter);
    perform(CommandID::PreviousTrack);
    workspace().setActiveTab(LibraryTab::Duplicates);
    perform(CommandID::NextTrack);
    ASSERT_EQ(inConverter.size(), 1);
    ASSERT_EQ(inDuplicates.size(), 1);
    EXPECT_EQ(inConverter.first().first().value<Notifications::Direction>(), Notifications::Direction::Up);
    EXPECT_EQ(inDuplicates.first().first().value<Notifications::Direction>(), Notifications::Direction::Down);
    EXPECT_EQ(focused(), QStringLiteral("b"));
    EXPECT_EQ(playing(), QStringLiteral("b"));
}

TEST_F(ContentViewPlaybackTest, SeeksByTheStepOfThePreferences)
{
    bring(Player::Playing, a);
    audioPlayer.toggle();
    preferences.seekStep.set(5);
    perform(CommandID::SeekForward);
    perform(CommandID::SeekForward);
    EXPECT_EQ(audioPlayer.progress().currentTime(), 10);
    perform(CommandID::SeekBack);
    EXPECT_EQ(audioPlayer.progress().currentTime(), 5);
}

TEST_F(ContentViewPlaybackTest, ThePlaylistIsEnteredWhereItPlays)
{
    const Track copy = Track(freshID(), b.url()); // as another section lists the file
    Track coverOnly = favorite(QStringLiteral("cover.mp3"));
    coverOnly.setIsInPlaylist(false);
    fill({a, b, c, coverOnly});
    const std::tuple<const char*, Player, Track, std::optional<TrackID>> cases[] = {
        {"a row", Player::Playing, b, b.id()},        {"a copy of a row", Player::Playing, copy, b.id()},
        {"being opened", Player::Opening, b, b.id()}, {"paused", Player::Paused, b, {}},
        {"no row", Player::Playing, coverOnly, {}},   {"nothing", Player::Idle, b, {}},
    };
    for (const auto& [name, state, played, expected] : cases) {
        SCOPED_TRACE(name);
        view.activateTab(LibraryTab::Covers);
        bring(state, played);
        view.activateTab(LibraryTab::Playlist);
        EXPECT_EQ(view.playlistReturnPlaybackID(), expected);
        executor.runAll();
    }
}

TEST_F(ContentViewPlaybackTest, ARemovedTrackGivesWayEvenWhileItIsOpened)
{
    workspace().setActiveTab(LibraryTab::Favorites);
    audioPlayer.play(a);
    perform(CommandID::RemoveFromFavorites, ids({a}));
    executor.runAll();
    EXPECT_EQ(playing(), QStringLiteral("c"));
    EXPECT_EQ(focused(), QStringLiteral("c"));
    perform(CommandID::RemoveFromFavorites, ids({c}));
    EXPECT_EQ(playing(), QString());
}
