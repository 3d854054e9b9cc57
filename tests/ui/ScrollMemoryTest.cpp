#include "support/WindowFixture.h"

#include "ui/tracks/ScrollActivity.h"
#include "ui/tracks/ScrollMemory.h"

#include <QScrollBar>

class ScrollMemoryTest : public WindowFixture {
protected:
    QScrollBar& bar() { return *table().verticalScrollBar(); }
    QString anchor() { return preferences.playlistScrollAnchorTrackID.get(); }
    static QString text(const TrackID& id) { return id.toString(QUuid::WithoutBraces).toUpper(); }

    void remember(double offset, const QString& anchorID)
    {
        preferences.playlistScrollOffset.set(offset);
        preferences.playlistScrollAnchorTrackID.set(anchorID);
    }
};

TEST_F(ScrollMemoryTest, ThePlaceIsWrittenOnceTheListRests)
{
    showRows(90);
    int writes = 0;
    QObject::connect(&preferences, &Preferences::changed, window.get(),
                     [&](const QString& key) { writes += key == preferences.playlistScrollOffset.key() ? 1 : 0; });
    for (int value = 1; value <= 1234; value += 9)
        bar().setValue(value);
    bar().setValue(1234);
    EXPECT_EQ(writes, 0);
    clock.advance(ScrollMemory::kRest);
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(preferences.playlistScrollOffset.get(), 1234);
    const int strip = table().rowLayout().headerTop(0) + table().rowLayout().rowTop(0);
    EXPECT_EQ(anchor(), text(table().tracks().track(table().indexAt({50, strip + 1}).row()).id()));

    bar().setValue(77);
    window->hide();
    EXPECT_EQ(preferences.playlistScrollOffset.get(), 77) << "a window that goes does not wait";
    EXPECT_EQ(writes, 2);
}

TEST_F(ScrollMemoryTest, RowsThatComeAreScrolledToThePlace)
{
    const QList<Track> all = rows(90);
    QList<Track> later = all;
    later.prepend(fullTrack(QStringLiteral("00-new")));
    const struct {
        const char* name;
        double offset;
        QString anchor;
        QList<Track> rows;
        int expected; ///< offset; -1 where the anchor has to be the first row
    } cases[] = {
        {"as it was", 1003, text(all[19].id()), all, 1003},
        {"a row came before it", 1003, text(all[19].id()), later, -1},
        {"the row is gone", 1003, text(QUuid::createUuid()), all, 1003},
        {"no row", 1003, QString(), all, 1003},
        {"nonsense", -5, QStringLiteral("x"), all, 0},
    };
    show();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        fill({});
        turn();
        remember(test.offset, test.anchor);
        workspace().setSelection({all[80].id()}, all[80].id()); // does not pull the list along
        fill(test.rows);
        turn();
        if (test.expected >= 0) {
            EXPECT_EQ(bar().value(), test.expected);
            EXPECT_EQ(preferences.playlistScrollOffset.get(), test.offset) << "not written again";
        } else {
            EXPECT_EQ(text(table().scrollPlace().topRow), test.anchor);
        }
    }
}

TEST_F(ScrollMemoryTest, TheProgramStartsWhereItEnded)
{
    const QList<Track> all = rows(90);
    remember(2001, text(all[38].id()));
    workspace().setSelection({all[2].id()}, all[2].id());
    fill(all); // before the window is shown, as a session comes back
    show();
    EXPECT_EQ(bar().value(), 2001);
}

TEST_F(ScrollMemoryTest, ASectionSwitchKeepsThePixel)
{
    const QList<Track> all = showRows(90);
    dashboard.select({all[3].id()}, all[3].id());
    turn();
    bar().setValue(1717);
    turn();
    open(LibraryTab::Covers);
    EXPECT_EQ(preferences.playlistScrollOffset.get(), 1717);
    open(LibraryTab::Playlist);
    EXPECT_EQ(bar().value(), 1717);
}

// Rows come first, then the focus, which the list scrolls to.
TEST_F(ScrollMemoryTest, AWorkspaceOfAnEarlierRunIsShownWhereItWasLeft)
{
    const QList<Track> all = rows(90);
    show();
    remember(1003, text(all[19].id()));
    workspace().setRestoringWorkspaceSession(true);
    fill(all);
    workspace().setSelection({all[80].id()}, all[80].id());
    EXPECT_NE(bar().value(), 1003) << "the focus pulls";
    workspace().setRestoringWorkspaceSession(false);
    turn();
    EXPECT_EQ(bar().value(), 1003);
    window->hide();
    EXPECT_EQ(preferences.playlistScrollOffset.get(), 1003);
}

TEST_F(ScrollMemoryTest, EveryWayToScrollIsReported)
{
    showRows(90);
    const auto turnWheel = [&](Qt::ScrollPhase phase) { wheel(*table().viewport(), {0, -40}, {0, -40}, false, phase); };
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"wheel", [&] { turnWheel(Qt::NoScrollPhase); }},
        {"momentum", [&] { turnWheel(Qt::ScrollMomentum); }},
        {"page down",
         [&] {
             for (int pages = 0; pages < 4; ++pages)
                 QTest::keyClick(&table(), Qt::Key_PageDown);
         }},
    };
    table().setCurrentIndex(table().model()->index(0, 0));
    for (const auto& [name, scroll] : ways) {
        SCOPED_TRACE(name);
        clock.advance(ScrollActivity::kRest);
        EXPECT_FALSE(dashboard.scrollStates.value(dashboard.scrollStates.size() - 1));
        dashboard.scrollStates.clear();
        scroll();
        EXPECT_EQ(dashboard.scrollStates, QList<bool>{true});
    }
}
