#include "support/PaintMeter.h"
#include "support/WindowFixture.h"

#include <QScrollBar>

class TrackTableTest : public WindowFixture {
protected:
    QPoint middle(int row, TrackColumn column) { return table().visualRect(cell(row, column)).center(); }
    /// Of the first row.
    QString tooltip(TrackColumn column, int width)
    {
        auto* delegate = static_cast<TrackDelegate*>(table().itemDelegate());
        return delegate->tooltip(cell(0, column), QRect(0, 0, width, 52));
    }
    /// Two folders of 30 rows.
    void showFolders()
    {
        QList<Track> tracks;
        for (const QString& folder : {QStringLiteral("/music/a"), QStringLiteral("/music/b")}) {
            for (int i = 0; i < 30; ++i)
                tracks.append(track(QStringLiteral("%1/%2.mp3").arg(folder).arg(i, 2, 10, QChar(u'0'))));
        }
        fill(tracks);
        show();
    }
};

TEST_F(TrackTableTest, AHeartTogglesItsOwnTrackAndLeavesTheSelection)
{
    const QList<Track> tracks = showRows(4);
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, middle(1, TrackColumn::Title));
    turn();
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, middle(3, TrackColumn::Heart));
    turn();
    EXPECT_EQ(dashboard.last("favorite").ids, ids({tracks[3]}));
    EXPECT_TRUE(now(tracks[3]).isFavorite());
    EXPECT_EQ(workspace().selectedIDs(), ids({tracks[1]}));

    // Pressed on one heart and let go on another: nothing.
    QTest::mousePress(table().viewport(), Qt::LeftButton, {}, middle(0, TrackColumn::Heart));
    QTest::mouseRelease(table().viewport(), Qt::LeftButton, {}, middle(2, TrackColumn::Heart));
    EXPECT_EQ(dashboard.count("favorite"), 1);
}

TEST_F(TrackTableTest, WhatIsCutOffIsInTheTooltip)
{
    fill({fullTrack(QStringLiteral("A title that takes a good deal of room in any list of tracks"))});
    show();
    EXPECT_TRUE(tooltip(TrackColumn::Title, 150).contains(QStringLiteral("any list of tracks — Nadia Volk")));
    EXPECT_EQ(tooltip(TrackColumn::Title, 2000), QString());
    EXPECT_EQ(tooltip(TrackColumn::Genre, 80), QStringLiteral("Melodic House & Techno"));
    EXPECT_EQ(tooltip(TrackColumn::Genre, 400), QString());
    EXPECT_EQ(tooltip(TrackColumn::Key, 400), QStringLiteral("Am")) << "the chip shows another spelling";
    EXPECT_TRUE(tooltip(TrackColumn::Heart, 60).endsWith(QStringLiteral("(F)")));
}

TEST_F(TrackTableTest, RowsAboveTheViewDoNotPushIt)
{
    QList<Track> tracks = rows(90);
    fill(tracks);
    show();
    table().verticalScrollBar()->setValue(1010);
    turn();
    const QModelIndex top = table().indexAt({10, 40});
    const TrackID id = table().tracks().track(top.row()).id();
    const int offset = table().visualRect(top).top();
    dashboard.scrollStates.clear();

    QList<Track> more = tracks;
    more.prepend(fullTrack(QStringLiteral("00-first")));
    more.prepend(fullTrack(QStringLiteral("000-first")));
    fill(more);
    turn();
    const QModelIndex after = table().indexAt({10, 40});
    EXPECT_EQ(table().tracks().track(after.row()).id(), id);
    EXPECT_EQ(table().visualRect(after).top(), offset);
    EXPECT_TRUE(dashboard.scrollStates.isEmpty()) << "nobody scrolled";
}

TEST_F(TrackTableTest, RemovalKeepsThePlaceAndWhatIsStillSelected)
{
    const struct {
        const char* name;
        int count;
        bool (*isGone)(int row);
    } cases[] = {
        {"the row at the top and some above it", 90, [](int row) { return row > 3 && row < 25; }},
        {"every other one", 1400, [](int row) { return row % 2 == 0; }},
        {"every other one behind the first half", 1400, [](int row) { return row > 700 && row % 2 == 0; }},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        workspace().setSelection({}, std::nullopt);
        fill({});
        const QList<Track> tracks = rows(each.count);
        fill(tracks);
        show();
        QSet<TrackID> selected;
        for (int row = 1; row < each.count; row += 2)
            selected.insert(tracks[row].id());
        workspace().setSelection(selected, tracks[1].id());
        table().verticalScrollBar()->setValue(table().rowLayout().rowTop(20));
        int next = *table().tracks().rowOf(table().scrollPlace().topRow);
        while (each.isGone(next))
            ++next;
        QList<Track> kept;
        QSet<TrackID> stillSelected;
        for (int row = 0; row < each.count; ++row) {
            if (each.isGone(row))
                continue;
            kept.append(tracks[row]);
            if (selected.contains(tracks[row].id()))
                stillSelected.insert(tracks[row].id());
        }
        fill(kept);
        turn();
        EXPECT_EQ(table().scrollPlace().topRow, tracks[next].id());
        EXPECT_EQ(window->section(LibraryTab::Playlist).selectedIDs(), stillSelected);
        EXPECT_EQ(table().currentIndex().row(), 1 - int(each.isGone(0)));
    }
}

TEST_F(TrackTableTest, ScrollingIsReportedOnceAndItsEndToo)
{
    showRows(90);
    for (int value : {50, 120, 300})
        table().verticalScrollBar()->setValue(value);
    EXPECT_EQ(dashboard.scrollStates, QList<bool>{true});
    clock.advance(async::seconds(0.2));
    EXPECT_EQ(dashboard.scrollStates.size(), 2);
    EXPECT_EQ(dashboard.scrollStates, (QList<bool>{true, false}));
}

TEST_F(TrackTableTest, DensityScalesRowsButNeverCutsText)
{
    showRows(3);
    const auto rowHeight = [&] { return table().visualRect(table().model()->index(0, 0)).height(); };
    const int ordinary = rowHeight();
    preferences.tableDensity.set(0.8);
    const int dense = rowHeight();
    EXPECT_LT(dense, ordinary);
    preferences.tableDensity.set(0.1);
    EXPECT_GE(rowHeight(), 40);
}

TEST_F(TrackTableTest, TheNextFolderPushesThePinnedHeaderAway)
{
    showFolders();
    const int height = table().rowLayout().rowTop(0);
    const int next = table().rowLayout().headerTop(1);
    const auto strip = [&](int offset) {
        table().verticalScrollBar()->setValue(offset);
        turn();
        return table().viewport()->grab({0, 0, table().viewport()->width(), height}).toImage();
    };
    const QImage first = strip(0);
    const QImage second = strip(next);
    ASSERT_NE(first, second);
    EXPECT_EQ(strip(next - height), first) << "still whole";
    const QImage pushed = strip(next - 10);
    const double ratio = pushed.devicePixelRatio();
    const auto part = [&](const QImage& image, int top, int rows) {
        return image.copy(0, int(top * ratio), image.width(), int(rows * ratio));
    };
    EXPECT_EQ(part(pushed, 0, 10), part(first, height - 10, 10)) << "its lower edge";
    EXPECT_EQ(part(pushed, 10, height - 10), part(second, 0, height - 10)) << "the one that pushes";
}

TEST_F(TrackTableTest, FoldersStandBetweenTheirRows)
{
    showFolders();
    const auto place = [&](int row) { return table().visualRect(table().model()->index(row, 1)); };
    const int header = place(0).top();
    EXPECT_GT(header, 0) << "the first folder's header stands above its first row";
    EXPECT_EQ(place(1).top(), place(0).bottom() + 1);
    EXPECT_EQ(place(30).top(), place(29).bottom() + 1 + header);
    EXPECT_FALSE(table().indexAt({100, header / 2}).isValid());

    // Whatever is scrolled to is never hidden behind the pinned header.
    for (int row : {59, 0, 45, 30, 29, 3}) {
        table().scrollTo(table().model()->index(row, 0));
        EXPECT_GE(place(row).top(), header);
        EXPECT_LE(place(row).bottom(), table().viewport()->height());
        EXPECT_EQ(table().indexAt(place(row).center()).row(), row);
    }
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, place(3).center());
    table().scrollTo(table().model()->index(31, 0));
    QTest::mouseClick(table().viewport(), Qt::LeftButton, Qt::ShiftModifier, place(31).center());
    turn();
    EXPECT_EQ(workspace().selectedIDs().size(), 29) << "from the fourth row to the second of the next folder";
    QTest::keyClick(&table(), Qt::Key_PageUp);
    EXPECT_LT(table().currentIndex().row(), 31);
    EXPECT_GE(place(table().currentIndex().row()).top(), header);
}

TEST(RowLayoutTest, PlacesAndRowsAgree)
{
    const QList<QList<FolderRun>> kRuns{
        {},
        {{QStringLiteral("/a"), 0, 20}},
        {{QStringLiteral("/a"), 0, 1}, {QStringLiteral("/b"), 1, 2}, {QStringLiteral("/c"), 2, 20}}};
    for (const QList<FolderRun>& runs : kRuns) {
        RowLayout layout;
        layout.setRowHeight(52);
        layout.setRowCount(20);
        layout.setRuns(runs);
        int row = -1;
        int headers = 0;
        for (int y = 0; y < layout.height(); ++y) {
            const int here = layout.rowAt(y);
            headers += here < 0 ? 1 : 0;
            if (here < 0)
                continue;
            ASSERT_TRUE(here == row || here == row + 1);
            ASSERT_TRUE(here == row || layout.rowTop(here) == y);
            row = here;
        }
        EXPECT_EQ(row, 19);
        EXPECT_EQ(headers, runs.size() * 34);
        EXPECT_EQ(layout.nearestRow(-50), 0);
        EXPECT_EQ(layout.nearestRow(1 << 20), 19);
    }
    EXPECT_EQ(RowLayout().nearestRow(0), -1);
}

TEST_F(TrackTableTest, ARowThatChangesIsPaintedWholeBelowFolderHeaders)
{
    const QList<Track> tracks = showRows(6);
    turn();
    PaintMeter painted(*table().viewport());
    replace(tracks[2], {{&AudioTags::title, "Another title"}});
    turn();
    const int row = *table().tracks().rowOf(tracks[2].id());
    const QRect whole = table().visualRect(table().model()->index(row, 0));
    EXPECT_TRUE(QRegion(whole).subtracted(painted.region).isEmpty());
}
