#include "support/StoreFixture.h"

class FavoritesTest : public StoreFixture {
protected:
    Favorites& favorites() { return store->favorites(); }
    const Track star = favorite(QStringLiteral("star.mp3"));
    const Track plain = track(QStringLiteral("plain.mp3"));
    const Track other = track(QStringLiteral("other.mp3"));
};

TEST_F(FavoritesTest, TogglesEachTrackOnItsOwn)
{
    const std::tuple<QList<Track>, QString, QList<Track>> cases[] = {
        {{plain}, QStringLiteral("Добавлено в избранное: 1"), {star, plain}},
        {{plain, other}, QStringLiteral("Добавлено в избранное: 2"), {star, plain, other}},
        {{star}, QStringLiteral("Убрано из избранного: 1"), {}},
        {{star, plain}, QStringLiteral("Избранное обновлено: 2"), {plain}},
        {{track(QStringLiteral("unknown.mp3"))}, QString(), {star}},
    };
    for (const auto& [toggled, status, favoritesAfter] : cases) {
        SCOPED_TRACE(qPrintable(status));
        fill({});
        workspace().setWorkspaceStatus(std::nullopt);
        fill({star, plain, other});
        QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
        QSignalSpy told(&notifications, &Notifications::velmoraFavoriteMembershipDidChange);
        favorites().toggleFavorites(ids(toggled));
        EXPECT_EQ(statusText(), status);
        EXPECT_EQ(ids(store->order().favoriteTracks()), ids(favoritesAfter));
        const int expectedChanges = status.isEmpty() ? 0 : 1;
        EXPECT_EQ(changes.size(), expectedChanges) << "one assignment for all";
        EXPECT_EQ(told.size(), expectedChanges);
        for (const Track& row : workspace().tracks())
            EXPECT_TRUE(!row.isFavorite() || row.isInCoverWorkspace());
        settle();
        if (history().canUndo()) {
            EXPECT_EQ(history().undoActionName(), QStringLiteral("Изменить избранное"));
            history().undo();
            EXPECT_EQ(ids(store->order().favoriteTracks()), ids({star}));
            EXPECT_EQ(ids(store->order().coverTracks()), ids({star}));
            history().redo();
            EXPECT_EQ(ids(store->order().favoriteTracks()), ids(favoritesAfter));
            history().clear();
        }
    }
}

TEST_F(FavoritesTest, LeavingFavoritesLeavesCoversAndMovesPlaybackOn)
{
    fill({star, plain});
    player.current = star.id();
    favorites().removeFromFavorites(ids({star, plain}), true);
    EXPECT_FALSE(now(star).isInCoverWorkspace());
    EXPECT_EQ(player.played, QList<TrackID>({plain.id()})) << "only favourites count";
    EXPECT_EQ(statusText(), QStringLiteral("Убрано из избранного: 1"));
    favorites().removeFromFavorites(ids({plain}), true);
    EXPECT_EQ(player.current, plain.id()) << "nothing happened";
    player.current = star.id();
    fill({star, plain});
    favorites().removeFromFavorites(ids({star}), false);
    EXPECT_EQ(player.current, star.id()) << "only when asked to";
}

TEST_F(FavoritesTest, FavoritesRefuseToLeaveCovers)
{
    Track coverOnly = track(QStringLiteral("cover.mp3"));
    coverOnly.setIsInPlaylist(false);
    coverOnly.setIsInCoverWorkspace(true);
    Track inBoth = track(QStringLiteral("both.mp3"));
    inBoth.setIsInCoverWorkspace(true);
    const Track star2 = favorite(QStringLiteral("star2.mp3"));
    fill({star, star2, coverOnly, inBoth});
    workspace().setActiveTab(LibraryTab::Covers);
    workspace().setSelection(ids({star, coverOnly}), coverOnly.id());

    store->removal().removeFromCoverWorkspace(ids({star, coverOnly, inBoth}));
    EXPECT_TRUE(workspace().notice()->startsWith(QStringLiteral("Этот трек"))) << "one refuses";
    EXPECT_TRUE(now(star).isInCoverWorkspace());
    EXPECT_FALSE(workspace().tracks().contains(coverOnly.id())) << "in no section at all any more";
    EXPECT_FALSE(now(inBoth).isInCoverWorkspace());
    EXPECT_EQ(workspace().selectedIDs(), ids({star}));
    EXPECT_FALSE(workspace().selectedID());
    store->removal().removeFromCoverWorkspace(ids({star, star2}));
    EXPECT_TRUE(workspace().notice()->startsWith(QStringLiteral("Эти треки")));

    EXPECT_EQ(statusText(), QStringLiteral("Убрано из обложек: 2"));
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Убрать из обложек"));
    history().undo();
    EXPECT_TRUE(now(coverOnly).isInCoverWorkspace() && !now(coverOnly).isInPlaylist());
    EXPECT_TRUE(now(inBoth).isInCoverWorkspace());
    EXPECT_EQ(workspace().selectedIDs(), ids({coverOnly, inBoth}));
    EXPECT_EQ(statusText(), QStringLiteral("Восстановлено: 2"));
}

TEST_F(FavoritesTest, RowsThatLeaveTheViewLeaveTheSelection)
{
    fill({star, plain});
    workspace().setActiveTab(LibraryTab::Favorites);
    workspace().setSelection(ids({star}), star.id());
    QSignalSpy focus(&notifications, &Notifications::velmoraFocusFavoriteTrack);
    favorites().toggleFavorites(ids({star}));
    EXPECT_TRUE(workspace().selectedIDs().isEmpty());
    EXPECT_FALSE(workspace().selectedID());
    EXPECT_EQ(focus.size(), 0);
    favorites().addToFavorites(ids({plain}));
    ASSERT_EQ(focus.size(), 1) << "the one that joined is shown";
    EXPECT_EQ(focus.first().first().toUuid(), plain.id());
}

TEST_F(FavoritesTest, FiltersByGenre)
{
    const Track house = TagTexts::on(favorite(QStringLiteral("1.mp3")), {{&AudioTags::genre, "House"}});
    const Track lower = TagTexts::on(favorite(QStringLiteral("2.mp3")), {{&AudioTags::genre, "house"}});
    const Track spaced = TagTexts::on(favorite(QStringLiteral("3.mp3")), {{&AudioTags::genre, "House "}});
    const Track blank = TagTexts::on(favorite(QStringLiteral("4.mp3")), {{&AudioTags::genre, " \n"}});
    fill({house, lower, spaced, blank});
    workspace().setActiveTab(LibraryTab::Favorites);
    workspace().setSelection(ids({house, lower}), lower.id());
    QSignalSpy told(&notifications, &Notifications::velmoraFavoriteGenreFilterDidChange);

    favorites().setFavoriteGenreFilter(QStringLiteral("House"));
    EXPECT_EQ(ids(store->selection().visibleTracks()), ids({house})) << "exactly";
    EXPECT_EQ(workspace().selectedIDs(), ids({house}));
    EXPECT_FALSE(workspace().selectedID());
    EXPECT_EQ(preferences.favoriteGenreFilter.get(), QStringLiteral("House"));

    favorites().setFavoriteOnlyUntagged(true);
    EXPECT_EQ(ids(store->selection().visibleTracks()), ids({blank}));
    EXPECT_TRUE(favorites().favoriteGenreFilter().isEmpty());
    favorites().setFavoriteGenreFilter(QStringLiteral("house"));
    EXPECT_FALSE(favorites().favoriteOnlyUntagged());
    EXPECT_EQ(told.size(), 3);
    favorites().setFavoriteGenreFilter(QString());
    EXPECT_EQ(favorites().favoriteGenreOptions().size(), 3);
}
