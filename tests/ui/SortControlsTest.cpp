#include "support/WindowFixture.h"

#include "ui/sections/SectionHeader.h"
#include "ui/sections/SortControls.h"

#include <QHeaderView>
#include <QMenu>

class SortControlsTest : public WindowFixture {
protected:
    SortControls& controls(LibraryTab tab) { return *window->section(tab).header().findChild<SortControls*>(); }

    /// What a menu offers, one letter before each: x for the present one, - for what cannot be chosen.
    std::string offered(LibraryTab tab)
    {
        QMenu menu;
        controls(tab).fillMenu(menu);
        QStringList rows;
        for (const QAction* action : menu.actions()) {
            const QString mark = action->isChecked() ? QStringLiteral("x ") : QString();
            rows.append(action->isSeparator() ? QString()
                                              : (action->isEnabled() ? mark : QStringLiteral("- ")) + action->text());
        }
        return rows.join(u'|').toStdString();
    }

    void choose(LibraryTab tab, const QString& title)
    {
        QMenu menu;
        controls(tab).fillMenu(menu);
        for (QAction* action : menu.actions()) {
            if (action->text() == title)
                action->trigger();
        }
        turn();
    }

    std::string shown(LibraryTab tab) { return titles(window->section(tab).model().rows()).join(u' ').toStdString(); }
};

TEST_F(SortControlsTest, TheMenuShowsWhatThereIsAndWhatIsChosen)
{
    const QList<Track> tracks = showRows(1);
    EXPECT_EQ(offered(LibraryTab::Playlist).find("По рейтингу"), std::string::npos) << "there are none yet";
    store->order().updatePlaylistPopularitySortValues({{tracks[0].id(), {}}});
    EXPECT_EQ(offered(LibraryTab::Playlist),
              "x По умолчанию|По имени|По жанру|По типу|По BPM|По рейтингу||- По возрастанию|- По убыванию");
    preferences.playlistPopularityEnabled.set(false);
    preferences.playlistSortField.set(QStringLiteral("bpm"));
    EXPECT_EQ(offered(LibraryTab::Playlist),
              "По умолчанию|По имени|По жанру|По типу|x По BPM||По возрастанию|x По убыванию");
    EXPECT_EQ(controls(LibraryTab::Playlist).button().text(), QStringLiteral("По BPM"));
    EXPECT_EQ(controls(LibraryTab::Favorites).button().text(), QStringLiteral("По умолчанию"));
    EXPECT_EQ(offered(LibraryTab::Favorites).find("По рейтингу"), std::string::npos);
    EXPECT_FALSE(window->section(LibraryTab::Covers).header().findChild<SortControls*>());

    speakEnglish();
    EXPECT_EQ(controls(LibraryTab::Playlist).button().text(), QStringLiteral("By BPM"));
    EXPECT_EQ(controls(LibraryTab::Playlist).button().toolTip(),
              QStringLiteral("Order of tracks · By BPM · Descending"));
}

TEST_F(SortControlsTest, WhatIsChosenSortsAtOnce)
{
    showRows(3);
    ASSERT_EQ(shown(LibraryTab::Playlist), "00 01 02");
    EXPECT_TRUE(controls(LibraryTab::Playlist).button().focusPolicy() & Qt::TabFocus);
    choose(LibraryTab::Playlist, QStringLiteral("По имени"));
    EXPECT_EQ(shown(LibraryTab::Playlist), "02 01 00");
    choose(LibraryTab::Playlist, QStringLiteral("По возрастанию"));
    EXPECT_EQ(shown(LibraryTab::Playlist), "00 01 02");
}

TEST_F(SortControlsTest, AHeadingOfFavoritesSorts)
{
    fill({favorite(QStringLiteral("2.mp3")), favorite(QStringLiteral("10.mp3"))});
    dashboard.activateTab(LibraryTab::Favorites);
    show();
    QHeaderView* headings = table(LibraryTab::Favorites).horizontalHeader();
    const auto click = [&](TrackColumn column) {
        const int section = *window->section(LibraryTab::Favorites).model().columnOf(column);
        const QPoint place(headings->sectionViewportPosition(section) + 4, headings->height() / 2);
        QTest::mouseClick(headings->viewport(), Qt::LeftButton, {}, place);
        turn();
    };
    EXPECT_EQ(shown(LibraryTab::Favorites), "10 2");
    click(TrackColumn::Title);
    EXPECT_EQ(shown(LibraryTab::Favorites), "2 10");
    click(TrackColumn::Title);
    EXPECT_EQ(shown(LibraryTab::Favorites), "10 2");
    EXPECT_EQ(preferences.favoriteSortDirection.get(), QStringLiteral("descending"));
    const int calls = dashboard.count("activateFavoriteSortFromHeader");
    click(TrackColumn::Heart);
    EXPECT_EQ(dashboard.count("activateFavoriteSortFromHeader"), calls) << "nothing to sort by";
    EXPECT_FALSE(table().horizontalHeader()->sectionsClickable()) << "the playlist has its menu";
}
