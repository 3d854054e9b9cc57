#include "support/WindowFixture.h"

#include "ui/controls/ThemeLabel.h"
#include "ui/sections/EmptyState.h"
#include "ui/sections/SectionHeader.h"
#include "ui/window/Sidebar.h"
#include "ui/window/SidebarRow.h"

class SectionsTest : public WindowFixture {};

TEST_F(SectionsTest, AnEmptySectionSaysWhatToDo)
{
    show();
    for (LibraryTab tab : kAllLibraryTabs) {
        open(tab);
        auto* empty = window->section(tab).findChild<EmptyState*>();
        ASSERT_TRUE(empty && empty->isVisible()) << qPrintable(rawValue(tab));
        EXPECT_FALSE(window->section(tab).list().isVisible());
        EXPECT_TRUE(window->sidebar().row(tab).isChecked());
        for (const ThemeLabel* label : empty->findChildren<ThemeLabel*>())
            EXPECT_FALSE(label->text().isEmpty());
        const int before = dashboard.count("addFilesHere");
        QTest::mouseClick(empty->findChild<ThemeButton*>(), Qt::LeftButton);
        EXPECT_EQ(dashboard.count("addFilesHere"), before + 1);
    }
}

TEST_F(SectionsTest, AFilterThatHidesFavoritesSaysSoAndCanBeCleared)
{
    preferences.favoriteGenreFilter.set(QStringLiteral("Dub"));
    fill({favorite(QStringLiteral("a.mp3")), favorite(QStringLiteral("b.mp3"))});
    show();
    open(LibraryTab::Favorites);
    SectionView& favorites = window->section(LibraryTab::Favorites);
    auto* empty = favorites.findChild<EmptyState*>();
    ASSERT_TRUE(empty->isVisible());
    EXPECT_EQ(empty->accessibleName(), QStringLiteral("Среди избранных нет треков с жанром «Dub»."));
    EXPECT_EQ(favorites.header().facts(), QStringLiteral("только жанр «Dub»"));
    auto* button = empty->findChild<ThemeButton*>();
    EXPECT_EQ(button->text(), QStringLiteral("Сбросить фильтр"));
    QTest::mouseClick(button, Qt::LeftButton);
    turn();
    EXPECT_TRUE(favorites.list().isVisible());
    EXPECT_EQ(favorites.model().rowCount(), 2);
    store->favorites().setFavoriteOnlyUntagged(true);
    ThemeButton* link = WindowFixture::button(favorites.header(), QStringLiteral("Сбросить фильтр"));
    ASSERT_TRUE(link && link->isVisible()) << "rows or none, a filter is seen";
    QTest::mouseClick(link, Qt::LeftButton);
    EXPECT_FALSE(store->favorites().favoriteOnlyUntagged() || link->isVisible());
}

TEST_F(SectionsTest, RowsTakeThePlaceOfTheEmptyStateAndGiveItBack)
{
    show();
    SectionView& playlist = window->section(LibraryTab::Playlist);
    fill(rows(3));
    turn();
    EXPECT_TRUE(playlist.list().isVisible());
    EXPECT_TRUE(playlist.header().facts().startsWith(QStringLiteral("3 трека")))
        << qPrintable(playlist.header().facts());
    fill({});
    turn();
    EXPECT_FALSE(playlist.list().isVisible());
    EXPECT_TRUE(playlist.header().facts().isEmpty());
}

TEST_F(SectionsTest, AHiddenSectionWaitsUntilItIsShown)
{
    show();
    TrackListModel& favorites = window->section(LibraryTab::Favorites).model();
    QSignalSpy inserted(&favorites, &QAbstractItemModel::rowsInserted);
    fill({favorite(QStringLiteral("a.mp3")), favorite(QStringLiteral("b.mp3"))});
    turn();
    EXPECT_EQ(inserted.size(), 0);
    dashboard.activateTab(LibraryTab::Favorites);
    EXPECT_EQ(favorites.rowCount(), 2);
    inserted.clear();
    dashboard.activateTab(LibraryTab::Playlist);
    dashboard.activateTab(LibraryTab::Favorites);
    EXPECT_EQ(inserted.size(), 0) << "a switch without changes costs nothing";
}

TEST_F(SectionsTest, TheConverterShowsItsJobsAndKeepsThem)
{
    show();
    dashboard.activateTab(LibraryTab::Converter);
    ConversionItem first;
    first.url = FileURL::fromPath(QStringLiteral("/music/Artist - Song.ogg"));
    ConversionItem second = first;
    second.id = QUuid::createUuid();
    workspace().setConversionItems({first, second});
    TrackListModel& model = window->section(LibraryTab::Converter).model();
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.track(0).displayTitle(), QStringLiteral("Song"));
    const int status = model.columnCount() - 1;
    EXPECT_EQ(model.index(0, status).data().toString(), QStringLiteral("В очереди"));

    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    first.status = {ConversionItem::Status::Case::Failed, QStringLiteral("Нет места")};
    workspace().setConversionItems({first, second});
    EXPECT_EQ(model.index(0, status).data().toString(), QStringLiteral("Нет места"));
    EXPECT_EQ(changed.size(), 1) << "only the states changed";
}
