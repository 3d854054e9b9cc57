#include "support/WindowFixture.h"

#include "ui/controls/ThemeLabel.h"
#include "ui/window/Sidebar.h"
#include "ui/window/StatusStrip.h"

#include <QAction>
#include <QLineEdit>
#include <QRegularExpression>

class WindowTest : public WindowFixture {};

TEST_F(WindowTest, ALanguageSwitchReachesEveryText)
{
    preferences.inspectorVisible.set(true);
    inventory.hasPicture = true;
    const QList<Track> tracks = showRows(2);
    workspace().setSelection(ids(tracks), tracks[0].id()); // in fields with more than one value something is said
    turn();
    speakEnglish();
    turn();
    QStringList english;
    for (const QWidget* each : window->findChildren<QWidget*>()) {
        english += {each->accessibleName(), each->toolTip(), each->accessibleDescription()};
        if (const auto* edit = qobject_cast<const QLineEdit*>(each))
            english += edit->placeholderText();
        if (const auto* label = qobject_cast<const ThemeLabel*>(each))
            english += label->text();
    }
    for (const QAction* action : window->actions())
        english += action->text();
    english.removeAll(QString());
    EXPECT_GT(english.size(), 80);
    static const QRegularExpression kCyrillic(QStringLiteral("[А-Яа-яЁё]"));
    EXPECT_EQ(english.filter(kCyrillic).join(u'|').toStdString(), "");
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

TEST_F(WindowTest, TheStatusLineOffersToUndo)
{
    const QList<Track> tracks = showRows(2);
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
