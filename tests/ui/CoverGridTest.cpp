#include "support/WindowFixture.h"

#include "ui/covers/CoverGrid.h"

#include <QScrollBar>

class CoverGridTest : public WindowFixture {
protected:
    void showCovers(int count)
    {
        coverRows(count);
        open(LibraryTab::Covers);
    }
    CoverGrid& grid() { return static_cast<CoverGrid&>(window->section(LibraryTab::Covers).list()); }
    QRect place(int row) { return grid().visualRect(grid().model()->index(row, 0)); }
};

TEST_F(CoverGridTest, EveryCellIsFoundWhereItIsDrawn)
{
    showCovers(95);
    for (int scroll : {0, 300, 777}) {
        grid().verticalScrollBar()->setValue(scroll);
        for (int row = 0; row < 95; ++row) {
            EXPECT_EQ(grid().indexAt(place(row).center()).row(), row);
            EXPECT_TRUE(row + 1 == 95 || !place(row).intersects(place(row + 1)));
        }
    }
    EXPECT_LE(place(grid().columns() - 1).right(), grid().viewport()->width());
    EXPECT_FALSE(grid().indexAt({3, 3}).isValid());
    grid().scrollTo(grid().model()->index(94, 0));
    EXPECT_TRUE(grid().viewport()->rect().contains(place(94)));
}

TEST_F(CoverGridTest, KeysWalkTheGrid)
{
    showCovers(20);
    const int columns = grid().columns();
    ASSERT_GT(columns, 2);
    const std::tuple<int, Qt::Key, int> kCases[] = {
        {0, Qt::Key_Right, 1},   {1, Qt::Key_Left, 0},     {0, Qt::Key_Left, 0}, {0, Qt::Key_Down, columns},
        {1, Qt::Key_Up, 1},      {columns, Qt::Key_Up, 0}, {3, Qt::Key_End, 19}, {19, Qt::Key_Home, 0},
        {19, Qt::Key_Right, 19}, {19, Qt::Key_Down, 19}};
    for (const auto& [from, key, to] : kCases) {
        grid().setCurrentIndex(grid().model()->index(from, 0));
        QTest::keyClick(&grid(), key, Qt::ShiftModifier); // without it the arrows are the player's
        EXPECT_EQ(grid().currentIndex().row(), to) << from << " " << key;
    }
}

TEST_F(CoverGridTest, AShiftClickTakesWhatLiesBetweenInReadingOrder)
{
    showCovers(20);
    const int columns = grid().columns();
    const int last = columns + 1;
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, place(2).center());
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, Qt::ShiftModifier, place(last).center());
    turn();
    EXPECT_EQ(workspace().selectedIDs().size(), last - 2 + 1);
    EXPECT_EQ(workspace().selectedID(), workspace().tracks().at(last).id());
}
