#include "support/FolderTrashCan.h"
#include "support/StoreFixture.h"

using List = Track::MetadataDestination;

/// Rows that leave lists while their files stay.
class RemovalTest : public StoreFixture {
protected:
    Removal& removal() { return store->removal(); }
    QSet<TrackID> listed() const { return ids(store->workspace().tracks().rows()); }

    const Track star = favorite(QStringLiteral("star.mp3"));
};

TEST_F(RemovalTest, AFavouriteStaysOutOfThePlaylistAndComesBackWithoutASecondRow)
{
    fill({a, star, b});
    QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
    workspace().setSelection(ids({a, star, b}), star.id());
    removal().removeTracksFromPlaylist(ids({a, star}));
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(listed(), ids({star, b}));
    EXPECT_FALSE(now(star).isInPlaylist());
    EXPECT_TRUE(now(star).isFavorite() && now(star).isInCoverWorkspace());
    EXPECT_EQ(workspace().selectedIDs(), ids({b}));
    EXPECT_FALSE(workspace().selectedID());
    EXPECT_EQ(statusText(), QStringLiteral("Убрано из плейлиста: 2"));

    history().undo();
    EXPECT_EQ(titles(workspace().tracks().rows()), titles({a, star, b}));
    EXPECT_TRUE(now(star).isInPlaylist());
    EXPECT_EQ(workspace().selectedIDs(), ids({a, star}));
    EXPECT_EQ(workspace().selectedID(), star.id());
    EXPECT_EQ(statusText(), QStringLiteral("Восстановлено: 2"));
    EXPECT_EQ(workspace().workspaceStatus()->icon, StatusIcon::Undo);
    const auto before = changes.size();
    history().undo();
    EXPECT_EQ(changes.size(), before) << "the history is empty";
}

TEST_F(RemovalTest, NothingToRemoveIsNoStep)
{
    fill({a});
    removal().removeTracksFromPlaylist(ids({b}));
    removal().removeFromAnalysis(ids({a}));
    removal().removeFromMusicalKeyAnalysis({});
    EXPECT_FALSE(history().canUndo());
    EXPECT_TRUE(statusText().isEmpty());
}

TEST_F(RemovalTest, SectionsOfTheirOwnGiveRowsUpAndGetThemBack)
{
    const struct {
        LibraryTab tab;
        List list;
        void (Removal::*remove)(const QSet<TrackID>&);
        QString status, name;
    } cases[] = {
        {LibraryTab::Analysis, List::Analysis, &Removal::removeFromAnalysis, QStringLiteral("Убрано из анализа: 2"),
         QStringLiteral("Убрать из анализа")},
        {LibraryTab::MusicalKey, List::MusicalKey, &Removal::removeFromMusicalKeyAnalysis,
         QStringLiteral("Убрано из тональности: 2"), QStringLiteral("Удалить из тональности")},
    };
    fill({a});
    for (const auto& each : cases) {
        workspace().setList(each.list, {a, b, c});
        store->selection().switchTo(each.tab);
        store->selection().select(ids({a, c}), c.id());
        (removal().*each.remove)(ids({a, c}));
        EXPECT_EQ(ids(workspace().list(each.list).rows()), ids({b}));
        EXPECT_EQ(listed(), ids({a})) << "the main list is another one";
        EXPECT_EQ(statusText(), each.status);
        EXPECT_EQ(history().undoActionName(), each.name);
        EXPECT_TRUE(workspace().activeSelection().isEmpty());
        history().undo();
        EXPECT_EQ(titles(workspace().list(each.list).rows()), titles({a, b, c}));
        EXPECT_EQ(workspace().selectedID(), c.id());
        EXPECT_EQ(listed(), ids({a}));
    }
}

TEST_F(RemovalTest, PlaybackGoesOnInTheRowsAsTheyWere)
{
    fill({a, b, c});
    player.current = b.id();
    removal().removeTracksFromPlaylist(ids({b, c}));
    EXPECT_EQ(player.current, a.id());
    EXPECT_EQ(workspace().selectedID(), a.id()) << "the focus goes along";
}

TEST_F(RemovalTest, OnlyVisibleRowsAreSelectedOnReturn)
{
    fill({star, a});
    removal().removeTracksFromPlaylist(ids({star, a}));
    store->selection().switchTo(LibraryTab::Favorites);
    QSignalSpy focused(&notifications, &Notifications::velmoraFocusFavoriteTrack);
    QSignalSpy told(&notifications, &Notifications::velmoraFavoriteMembershipDidChange);
    history().undo();
    EXPECT_EQ(workspace().selectedIDs(), ids({star})) << "the other is no favourite";
    EXPECT_EQ(statusText(), QStringLiteral("Восстановлено: 2")) << "it is counted all the same";
    EXPECT_EQ(told.size(), 1);
    ASSERT_EQ(focused.size(), 1);
    EXPECT_EQ(focused.first().first().toUuid(), star.id());
    removal().removeTracksFromPlaylist(ids({a}));
    history().undo();
    EXPECT_EQ(workspace().selectedIDs(), ids({star})) << "nothing of it is shown: the selection stays";
}

TEST_F(RemovalTest, ARowThatLeftUnreadIsReadWhenItComesBack)
{
    fill({a, b});
    filesHold({{&AudioTags::title, "read"}});
    removal().removeTracksFromPlaylist(ids({a}));
    undo();
    EXPECT_EQ(readURLs, QList<QUrl>{a.url()});
    EXPECT_EQ(now(a).tags().title, QStringLiteral("read"));
}

// What another section or another program wrote meanwhile is in the file alone.
TEST_F(RemovalTest, OnlyRowsWhoseFilesChangedWhileTheyWereAwayAreReadAgain)
{
    FolderTrashCan can(folder.filePath(QStringLiteral("Trash")));
    useTrashCan(can);
    const Track same = read(file(QStringLiteral("same.mp3")).toLocalFile());
    const Track other = read(file(QStringLiteral("other.mp3")).toLocalFile());
    const QUrl trashed = QUrl::fromLocalFile(folder.filePath(QStringLiteral("Trash/files/other.mp3")));
    filesHold({{&AudioTags::title, "read"}});
    for (const bool isTrashed : {false, true}) {
        SCOPED_TRACE(isTrashed);
        readURLs.clear();
        workspace().setList(List::Analysis, {same, other});
        if (isTrashed)
            removal().trashTracks(ids({same, other}));
        else
            removal().removeFromAnalysis(ids({same, other}));
        settle();
        append(isTrashed ? trashed : other.url(), "more");
        undo();
        EXPECT_EQ(readURLs, QList<QUrl>{other.url()});
        EXPECT_EQ(workspace().analysisTracks().find(other.id())->tags().title, QStringLiteral("read"));
    }
}

TEST_F(RemovalTest, UndoTakesBackWhatHappenedLast)
{
    fill({a, b, star});
    const auto membership = QStringLiteral("Изменить избранное");
    const auto playlist = QStringLiteral("Убрать из плейлиста");
    store->favorites().toggleFavorites(ids({a}));
    settle();
    removal().removeTracksFromPlaylist(ids({b}));
    store->favorites().toggleFavorites(ids({star}));
    settle();
    EXPECT_EQ(history().undoActionName(), membership);
    history().undo();
    EXPECT_TRUE(now(star).isFavorite());
    EXPECT_EQ(history().undoActionName(), playlist);
    history().undo();
    EXPECT_EQ(listed(), ids({a, b, star}));
    EXPECT_EQ(history().undoActionName(), membership);
    history().undo();
    EXPECT_FALSE(now(a).isFavorite());
    EXPECT_FALSE(history().canUndo());

    // An edit that is done again is the last thing that happened, and a removal ends the line of what can be.
    history().redo();
    EXPECT_TRUE(now(a).isFavorite());
    EXPECT_EQ(statusText(), QStringLiteral("Повторено: Изменить избранное"));
    EXPECT_EQ(history().undoActionName(), membership);
    removal().removeTracksFromPlaylist(ids({b}));
    EXPECT_FALSE(history().canRedo());
}

TEST_F(RemovalTest, AStepWhoseRowsAreBackAlreadyIsSkipped)
{
    fill({a, b, star});
    store->favorites().toggleFavorites(ids({a}));
    removal().removeTracksFromPlaylist(ids({b, star}));
    workspace().setTracks({now(a), track(QStringLiteral("b.mp3")), star}); // an import brought them
    history().undo();
    EXPECT_FALSE(now(a).isFavorite()) << "one press takes something back";
    EXPECT_EQ(statusText(), QStringLiteral("Отменено: Изменить избранное"));
    EXPECT_EQ(workspace().tracks().size(), 3);
    EXPECT_FALSE(history().canUndo());
}
