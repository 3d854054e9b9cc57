#include "support/PaintMeter.h"
#include "support/WindowFixture.h"

#include "ui/covers/CoverGrid.h"
#include "ui/tracks/PlayingMark.h"

#include <QScrollBar>

class PlayingMarkTest : public WindowFixture {
protected:
    void start(int count) { tracks = coverRows(count); }
    QRect row(int number) { return table().visualRect(table().model()->index(number, 0)); }
    /// Pixels of the accent in the gutter of a row.
    int marked(int number)
    {
        const QRect gutter(Metrics::kSelectionBar + 1, row(number).top(), Metrics::kRowGutter - 5,
                           row(number).height());
        const QImage image = table().viewport()->grab(gutter).toImage();
        const QColor accent = window->theme().colours().accent;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == accent ? 1 : 0;
        }
        return count;
    }

    QList<Track> tracks;
};

TEST_F(PlayingMarkTest, TheGutterShowsWhatPlaysAndWhatIsPaused)
{
    start(6);
    const QList<Track>& shown = table().tracks().rows();
    EXPECT_EQ(marked(1), 0);
    play(shown[1]);
    const int playing = marked(1);
    EXPECT_GT(playing, 10);
    EXPECT_EQ(marked(2), 0);
    player.toggle();
    turn();
    EXPECT_GT(marked(1), 0);
    EXPECT_LT(marked(1), playing) << "an outline has less colour than a full triangle";
    play(shown[2]);
    EXPECT_EQ(marked(1), 0);
    EXPECT_EQ(marked(2), playing);
    player.stopAndClear();
    turn();
    EXPECT_EQ(marked(2), 0);
}

TEST_F(PlayingMarkTest, AnotherRowOfTheSameFileIsMarkedToo)
{
    start(3);
    play(tracks[0]);
    const PlayingMark mark(player);
    EXPECT_EQ(mark.of(tracks[0].withID(QUuid::createUuid())), PlayingMark::State::Playing);
    EXPECT_EQ(mark.of(tracks[1]), PlayingMark::State::None);
}

TEST_F(PlayingMarkTest, OnlyTheRowsConcernedAreRepaintedAndTheModelStays)
{
    start(5000);
    table().verticalScrollBar()->setValue(20'000);
    turn();
    const int first = table().rowLayout().nearestRow(table().verticalScrollBar()->value()) + 2;
    const QList<Track> shown = table().tracks().rows();
    const QSignalSpy changed(table().model(), &QAbstractItemModel::dataChanged);
    const QSignalSpy reset(table().model(), &QAbstractItemModel::modelReset);
    const auto wide = [&](int number) {
        return QRect(0, row(number).top(), table().viewport()->width(), row(number).height());
    };
    PaintMeter area(*table().viewport());
    play(shown[first]);
    EXPECT_EQ(area.take(), QRegion(wide(first)));
    play(shown[first + 3]);
    EXPECT_EQ(area.take(), QRegion(wide(first)) + wide(first + 3));
    play(shown[0]);
    EXPECT_EQ(area.take(), QRegion(wide(first + 3))) << "its own row is far away";
    EXPECT_TRUE(changed.isEmpty() && reset.isEmpty());
}

TEST_F(PlayingMarkTest, RowsArePlayedByDoubleClickReturnAndTheirCover)
{
    start(6);
    const QList<Track>& shown = table().tracks().rows();
    const auto plays = [&] { return dashboard.count("playRow"); };
    const QPoint title(row(2).right() + 60, row(2).center().y());
    const QPoint cover = TrackDelegate::coverRect(row(3)).center();
    QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, title);
    EXPECT_EQ(dashboard.last("playRow").ids, ids({shown[2]}));
    QTest::mouseClick(table().viewport(), Qt::LeftButton, Qt::ControlModifier, cover);
    EXPECT_EQ(plays(), 1) << "with Ctrl a click on the cover selects";
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, cover);
    EXPECT_EQ(dashboard.last("playRow").ids, ids({shown[3]}));
    QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, cover);
    EXPECT_EQ(plays(), 2) << "the second click of two does not stop it again";
    table().setCurrentIndex(table().model()->index(4, 0));
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(dashboard.last("playRow").ids, ids({shown[4]}));
    EXPECT_EQ(plays(), 3);
}

TEST_F(PlayingMarkTest, CoversArePlayedTheSameWay)
{
    start(8);
    open(LibraryTab::Covers);
    auto& grid = static_cast<CoverGrid&>(window->section(LibraryTab::Covers).list());
    const auto cell = [&](int number) { return grid.visualRect(grid.model()->index(number, 0)); };
    const auto middle = [&](int number) {
        return QPoint(cell(number).center().x(), cell(number).top() + cell(number).width() / 2);
    };
    const QList<Track>& shown = window->section(LibraryTab::Covers).model().rows();
    const auto plays = [&] { return dashboard.count("playRow"); };
    PaintMeter area(*grid.viewport());
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, cell(1).topLeft() + QPoint(6, 6));
    EXPECT_EQ(plays(), 0) << "beside the button a click selects";
    turn();
    area.take();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, middle(2));
    EXPECT_EQ(dashboard.last("playRow").ids, ids({shown[2]}));
    turn();
    EXPECT_EQ(area.take().boundingRect(), cell(2)) << "the mark takes its own cell alone";
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, cell(4).topLeft() + QPoint(6, 6));
    EXPECT_EQ(dashboard.last("playRow").ids, ids({shown[4]}));
    grid.setCurrentIndex(grid.model()->index(5, 0));
    QTest::keyClick(&grid, Qt::Key_Return);
    EXPECT_EQ(dashboard.last("playRow").ids, ids({shown[5]}));
    EXPECT_EQ(plays(), 3);
}

TEST_F(PlayingMarkTest, ComingBackToThePlaylistShowsTheRowThatPlays)
{
    start(300);
    const TrackID far = table().tracks().rows()[250].id();
    dashboard.returnID = far;
    dashboard.activateTab(LibraryTab::Favorites);
    open(LibraryTab::Playlist);
    EXPECT_TRUE(table().viewport()->rect().contains(row(250)));
    dashboard.returnID = std::nullopt;
    table().verticalScrollBar()->setValue(0);
    dashboard.activateTab(LibraryTab::Favorites);
    dashboard.activateTab(LibraryTab::Playlist);
    EXPECT_EQ(table().verticalScrollBar()->value(), 0) << "else the list stands where it stood";
}
