#include "support/WindowFixture.h"

#include "ui/drops/DropOutline.h"
#include "ui/drops/DropTarget.h"
#include "ui/sections/EmptyState.h"
#include "ui/window/Sidebar.h"
#include "ui/window/SidebarRow.h"

class DropTest : public WindowFixture {
protected:
    static std::unique_ptr<QMimeData> mime(const QList<QUrl>& urls)
    {
        auto data = std::make_unique<QMimeData>();
        data->setUrls(urls);
        return data;
    }
    QUrl song = FileURL::fromPath(QStringLiteral("/music/song.flac"));
};

TEST_F(DropTest, OnASectionOfTheSidebar)
{
    show();
    const auto data = mime({song});
    for (LibraryTab tab : kAllLibraryTabs) {
        SidebarRow& row = window->sidebar().row(tab);
        EXPECT_TRUE(enter(row, *data));
        EXPECT_TRUE(row.isDropHighlighted());
        EXPECT_TRUE(drop(row, *data));
        EXPECT_FALSE(row.isDropHighlighted());
        ASSERT_FALSE(dashboard.drops.isEmpty());
        EXPECT_EQ(dashboard.drops.last().tab, tab);
        EXPECT_EQ(dashboard.drops.last().urls, QList<QUrl>{song});
    }
    EXPECT_EQ(dashboard.drops.size(), 7);
}

TEST_F(DropTest, OnTheListAndOnTheEmptyState)
{
    show();
    const auto data = mime({song});
    SectionView& playlist = window->section(LibraryTab::Playlist);
    auto* outline = playlist.findChild<DropOutline*>();
    QWidget& empty = *playlist.findChild<EmptyState*>();
    EXPECT_TRUE(enter(empty, *data));
    EXPECT_TRUE(outline->isVisible());
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&empty, &leave);
    EXPECT_FALSE(outline->isVisible());

    fill(rows(2));
    turn();
    EXPECT_TRUE(enter(*table().viewport(), *data));
    EXPECT_TRUE(drop(*table().viewport(), *data));
    EXPECT_FALSE(outline->isVisible());
    ASSERT_EQ(dashboard.drops.size(), 1);
    EXPECT_EQ(dashboard.drops[0].tab, LibraryTab::Playlist);
}

TEST_F(DropTest, WhatIsOfNoUseIsRefused)
{
    show();
    const QUrl text = FileURL::fromPath(QStringLiteral("/music/notes.txt"));
    const QUrl ogg = FileURL::fromPath(QStringLiteral("/music/song.ogg"));
    const QUrl web(QStringLiteral("https://example.org/song.mp3"));
    const QUrl directory = FileURL::fromPath(folder.path());
    const std::tuple<QList<QUrl>, bool, bool> kCases[] = {
        {{}, false, false},         {{text}, false, false},    {{web}, false, false},
        {{text, song}, true, true}, {{directory}, true, true}, {{ogg}, false, true},
    };
    for (const auto& [urls, playlist, converter] : kCases) {
        const auto data = mime(urls);
        for (const auto& [tab, isUsable] :
             {std::pair(LibraryTab::Playlist, playlist), std::pair(LibraryTab::Converter, converter)}) {
            SidebarRow& row = window->sidebar().row(tab);
            EXPECT_EQ(enter(row, *data), isUsable);
            EXPECT_EQ(row.isDropHighlighted(), isUsable);
            EXPECT_TRUE(!isUsable || drop(row, *data));
        }
    }
    EXPECT_EQ(dashboard.drops.size(), 5);
}
