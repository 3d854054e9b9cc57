#include "support/WindowFixture.h"

class SelectionSyncTest : public WindowFixture {
protected:
    SelectionSyncTest()
    {
        tracks = rows(8);
        fill(tracks);
        show();
    }
    void click(int row, Qt::KeyboardModifiers modifiers = {})
    {
        TrackTable& view = table();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                          view.visualRect(view.model()->index(row, 1)).center());
        turn();
    }
    QSet<TrackID> shown() { return window->section(LibraryTab::Playlist).selectedIDs(); }

    QList<Track> tracks;
};

TEST_F(SelectionSyncTest, ClicksReachTheWorkspaceOnceEach)
{
    click(2);
    EXPECT_EQ(workspace().selectedIDs(), ids({tracks[2]}));
    EXPECT_EQ(workspace().selectedID(), tracks[2].id());
    EXPECT_EQ(dashboard.count("select"), 1) << "selection and focus travel together";

    click(4, Qt::ShiftModifier);
    EXPECT_EQ(workspace().selectedIDs(), ids({tracks[2], tracks[3], tracks[4]}));
    click(3, Qt::ControlModifier);
    EXPECT_EQ(workspace().selectedIDs(), ids({tracks[2], tracks[4]}));
    EXPECT_EQ(dashboard.count("select"), 3);
}

TEST_F(SelectionSyncTest, TheWorkspaceIsFollowedWithoutAnEcho)
{
    workspace().setSelection(ids({tracks[1], tracks[5], tracks[6]}), tracks[5].id());
    EXPECT_EQ(shown(), ids({tracks[1], tracks[5], tracks[6]}));
    EXPECT_EQ(table().currentIndex().row(), 5);
    turn();
    EXPECT_EQ(dashboard.count("select"), 0);

    workspace().setSelection({}, std::nullopt);
    EXPECT_TRUE(shown().isEmpty());
    EXPECT_FALSE(table().currentIndex().isValid());
}

TEST_F(SelectionSyncTest, RowsThatMoveStaySelected)
{
    click(2);
    QList<Track> changed = tracks;
    changed.removeFirst();
    changed[0].setDuration(180);
    fill(changed);
    turn();
    EXPECT_EQ(shown(), ids({tracks[2]}));
    EXPECT_EQ(workspace().selectedIDs(), ids({tracks[2]}));
    EXPECT_EQ(dashboard.count("select"), 1);
}

TEST_F(SelectionSyncTest, AClickIsNotLostWhenRowsChangeInTheSameTurn)
{
    TrackTable& view = table();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(3, 1)).center());
    fill(tracks + QList<Track>{fullTrack(QStringLiteral("zz"))});
    turn();
    EXPECT_EQ(workspace().selectedIDs(), ids({tracks[3]}));
}

TEST_F(SelectionSyncTest, EachSectionHasItsOwn)
{
    QList<Track> favorites = tracks;
    for (Track& each : favorites) {
        each.setIsFavorite(true);
        each.setIsInCoverWorkspace(true);
    }
    fill(favorites);
    click(1);
    open(LibraryTab::Favorites);
    EXPECT_TRUE(window->section(LibraryTab::Favorites).selectedIDs().isEmpty());
    workspace().setSelection(ids({tracks[6]}), tracks[6].id());
    open(LibraryTab::Playlist);
    EXPECT_EQ(shown(), ids({tracks[1]}));
    dashboard.activateTab(LibraryTab::Favorites);
    EXPECT_EQ(window->section(LibraryTab::Favorites).selectedIDs(), ids({tracks[6]}));
}

TEST_F(SelectionSyncTest, SelectAllTakesEveryRow)
{
    QTest::keyClick(&table(), Qt::Key_A, Qt::ControlModifier);
    turn();
    EXPECT_EQ(workspace().selectedIDs(), ids(tracks));
}
