#include "support/WindowFixture.h"

#include "ui/controls/ThemeLabel.h"
#include "ui/player/NowPlaying.h"
#include "ui/player/PlayerBar.h"
#include "ui/window/Banner.h"
#include "ui/window/Sidebar.h"
#include "ui/window/SidebarRow.h"
#include "ui/window/StatusStrip.h"

#include <QAction>

class WindowTest : public WindowFixture {
protected:
    QStringList texts() const
    {
        QStringList texts;
        for (const ThemeLabel* label : window->findChildren<ThemeLabel*>())
            texts += label->text();
        for (const QAbstractButton* button : window->findChildren<QAbstractButton*>())
            texts += button->accessibleName();
        for (const QAction* action : window->actions())
            texts += action->text();
        return texts;
    }
};

TEST_F(WindowTest, ALanguageSwitchReachesEveryText)
{
    fill(rows(2));
    show();
    VelmoraLocalization::setLanguage(AppLanguage::English);
    emit notifications.velmoraLanguageDidChange();
    static const QRegularExpression kCyrillic(QStringLiteral("[А-Яа-яЁё]"));
    const QStringList english = texts();
    EXPECT_GT(english.size(), 40);
    for (const QString& text : english)
        EXPECT_FALSE(text.contains(kCyrillic)) << qPrintable(text);
    EXPECT_EQ(table().model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Track"));
}

TEST_F(WindowTest, LayoutDecidesSizeAndSidebar)
{
    EXPECT_EQ(window->size(), QSize(1440, 900));
    EXPECT_EQ(window->minimumSize(), QSize(1280, 760));
    EXPECT_FALSE(window->sidebar().isCollapsed());
    preferences.workspaceLayout.set(QStringLiteral("compact"));
    EXPECT_EQ(window->size(), QSize(1040, 700));
    EXPECT_EQ(window->minimumSize(), QSize(900, 620));
    EXPECT_TRUE(window->sidebar().isCollapsed());
    emit window->sidebar().collapseToggled();
    EXPECT_FALSE(window->sidebar().isCollapsed());
    EXPECT_FALSE(preferences.compactSidebarCollapsed.get());
    EXPECT_FALSE(preferences.sidebarCollapsed.get()) << "each layout remembers its own";
    preferences.workspaceLayout.set(QStringLiteral("full"));
    EXPECT_EQ(window->size(), QSize(1440, 900));
    for (LibraryTab tab : kAllLibraryTabs) {
        SectionView& section = window->section(tab);
        EXPECT_LE(section.minimumSizeHint().width(), 900 - 60) << "fits the smallest window";
    }
}

TEST_F(WindowTest, ItsPlaceIsRemembered)
{
    show();
    window->setGeometry(20, 30, 1300, 770);
    window->hide();
    MainWindow second(WindowServices{*store, dashboard, player, audio, executor, clock, waveforms, {}});
    EXPECT_EQ(second.size(), QSize(1300, 770));
}

TEST_F(WindowTest, ErrorsAndNoticesStayUntilTheyAreClosed)
{
    show();
    auto* banner = window->findChild<Banner*>();
    EXPECT_FALSE(banner->isVisible());
    workspace().setNotice(QStringLiteral("Заметка"));
    EXPECT_TRUE(banner->isVisible());
    EXPECT_EQ(banner->accessibleDescription(), QStringLiteral("Заметка"));
    workspace().setLastError(QString());
    EXPECT_EQ(banner->accessibleName(), QStringLiteral("Не удалось сохранить теги"));
    EXPECT_EQ(banner->accessibleDescription(), QStringLiteral("Неизвестная ошибка"));
    QTest::keyClick(banner, Qt::Key_Escape);
    EXPECT_FALSE(workspace().lastError().has_value());
    EXPECT_TRUE(banner->isVisible()) << "the notice is still there";
    QTest::keyClick(window->focusWidget(), Qt::Key_Return); // its button has the focus
    EXPECT_FALSE(workspace().notice().has_value());
    EXPECT_FALSE(banner->isVisible());
}

TEST_F(WindowTest, KeysReachTheirCommands)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    show();
    workspace().setSelection(ids({tracks[0], tracks[2]}), tracks[0].id());
    QTest::keyClick(&table(), Qt::Key_F);
    EXPECT_EQ(dashboard.last("favorite").ids, ids({tracks[0], tracks[2]}));
    EXPECT_TRUE(now(tracks[2]).isFavorite());
    turn();
    QTest::keyClick(&table(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(now(tracks[2]).isFavorite());
    QTest::keyClick(&table(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(now(tracks[2]).isFavorite());
    QTest::keyClick(&table(), Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(dashboard.count("addFiles"), 1);
    QTest::keyClick(&table(), Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(workspace().activeTab(), LibraryTab::Covers);
    EXPECT_TRUE(window->sidebar().row(LibraryTab::Covers).isChecked());
    EXPECT_TRUE(window->section(LibraryTab::Covers).isVisible());
}

TEST_F(WindowTest, TheBarShowsTheFocusedTrackAndItsHeart)
{
    const QList<Track> tracks = rows(2);
    fill(tracks);
    show();
    auto* bar = window->findChild<PlayerBar*>();
    auto* heart = &bar->findChild<NowPlaying*>()->heart();
    EXPECT_FALSE(heart->isVisible());
    workspace().setSelection(ids({tracks[1]}), tracks[1].id());
    EXPECT_EQ(bar->accessibleName(), tracks[1].displayTitle());
    ASSERT_TRUE(heart->isVisible());
    EXPECT_EQ(heart->accessibleName(), QStringLiteral("Добавить в избранное"));
    QTest::mouseClick(heart, Qt::LeftButton);
    EXPECT_EQ(heart->accessibleName(), QStringLiteral("Убрать из избранного"));

    const int below = bar->y();
    preferences.dashboardPlayerOnTop.set(true);
    turn();
    EXPECT_LT(bar->y(), below);
}

TEST_F(WindowTest, TheStatusLineOffersToUndo)
{
    const QList<Track> tracks = rows(2);
    fill(tracks);
    show();
    auto* strip = window->findChild<StatusStrip*>();
    auto* undoLink = strip->findChild<ThemeButton*>();
    EXPECT_FALSE(undoLink->isVisible());
    dashboard.commands().perform(CommandID::Favorite, {.ids = ids({tracks[0]})});
    turn();
    EXPECT_EQ(strip->accessibleName(), QStringLiteral("Добавлено в избранное: 1"));
    ASSERT_TRUE(undoLink->isVisible());
    EXPECT_EQ(undoLink->text(), QStringLiteral("Отменить: Изменить избранное"));
    QTest::mouseClick(undoLink, Qt::LeftButton);
    EXPECT_FALSE(now(tracks[0]).isFavorite());
}

TEST_F(WindowTest, ThemeSwitchesAtRunTime)
{
    show();
    const QColor dark = window->grab().toImage().pixelColor(100, 500);
    preferences.appAppearance.set(QStringLiteral("light"));
    turn();
    const QColor light = window->grab().toImage().pixelColor(100, 500);
    EXPECT_EQ(dark, ThemeColours::of(Appearance::Dark).side);
    EXPECT_EQ(light, ThemeColours::of(Appearance::Light).side);
}
