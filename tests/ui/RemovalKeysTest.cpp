#include "support/WindowFixture.h"

#include "ui/context/WindowContext.h"
#include "ui/controls/ThemeButton.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/window/StatusStrip.h"
#include "ui/window/TrackMenu.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>

class RemovalKeysTest : public WindowFixture {
protected:
    /// What a key asked of the dashboard about removals, with the section.
    QStringList press(QWidget& focused, int key, Qt::KeyboardModifiers modifiers)
    {
        focused.setFocus(Qt::TabFocusReason);
        turn();
        dashboard.calls.clear();
        QTest::keyClick(&focused, static_cast<Qt::Key>(key), modifiers);
        QStringList asked;
        for (const FakeDashboard::Call& call : std::as_const(dashboard.calls)) {
            if (call.name == QLatin1StringView("remove") || call.name == QLatin1StringView("trash"))
                asked += call.text.isEmpty() ? call.name : call.name + u' ' + call.text;
        }
        return asked;
    }

    struct Key {
        int key;
        Qt::KeyboardModifiers modifiers;
        QStringList asked;
    };
    const QList<Key> keys{
        {Qt::Key_Delete, {}, {QStringLiteral("remove")}},
        {Qt::Key_Backspace, {}, {QStringLiteral("remove")}},
        {Qt::Key_Delete, Qt::ShiftModifier, {QStringLiteral("trash")}},
        {Qt::Key_Backspace, Qt::ControlModifier, {QStringLiteral("trash")}},
        {Qt::Key_Delete, Qt::AltModifier, {}},
    };
};

TEST_F(RemovalKeysTest, InAListTheyRemoveWhatIsSelected)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    show();
    EXPECT_EQ(press(table(), Qt::Key_Delete, {}), QStringList()) << "nothing is selected";
    store->selection().select({tracks[0].id(), tracks[2].id()}, tracks[2].id());
    for (const Key& each : keys) {
        EXPECT_EQ(press(table(), each.key, each.modifiers), each.asked) << each.key;
        if (!each.asked.isEmpty()) {
            EXPECT_EQ(dashboard.calls.last().ids, ids({tracks[0], tracks[2]}));
        }
    }
}

TEST_F(RemovalKeysTest, InAFieldTheyStayThere)
{
    const QList<Track> tracks = rows(1);
    fill(tracks);
    show();
    store->selection().select({tracks[0].id()}, tracks[0].id());
    QLineEdit line(QStringLiteral("abc"), window.get());
    QLineEdit readOnly(QStringLiteral("abc"), window.get());
    readOnly.setReadOnly(true);
    QPlainTextEdit text(QStringLiteral("abc"), window.get());
    for (QWidget* field : std::initializer_list<QWidget*>{&line, &readOnly, &text}) {
        field->show();
        for (const Key& each : keys)
            EXPECT_EQ(press(*field, each.key, each.modifiers), QStringList()) << each.key;
    }
}

TEST_F(RemovalKeysTest, TheMenuOfARowOffersItsSectionsRemoval)
{
    const Track plain = favorite(QStringLiteral("a.mp3"));
    fill({plain});
    using List = Track::MetadataDestination;
    for (const List list : {List::Analysis, List::MusicalKey, List::Duplicates})
        workspace().setList(list, {plain});
    const QString trash = QStringLiteral("Переместить в Корзину");
    const struct {
        LibraryTab tab;
        QString removal; ///< empty where a mark of the row or the section itself takes it away
        bool trashes;
    } kCases[]{
        {LibraryTab::Playlist, QStringLiteral("Убрать из плейлиста"), true},
        {LibraryTab::Favorites, {}, true},
        {LibraryTab::Analysis, QStringLiteral("Убрать из анализа"), true},
        {LibraryTab::MusicalKey, QStringLiteral("Удалить из тональности"), true},
        {LibraryTab::Duplicates, {}, true},
        {LibraryTab::Converter, {}, false},
    };
    ThumbnailCache thumbnails{executor, {}};
    const WindowContext context{*store,          dashboard,  player,    audio,
                                window->theme(), thumbnails, waveforms, window->rowWaveforms(),
                                clock,           executor};
    for (const auto& each : kCases) {
        dashboard.calls.clear();
        QMenu menu;
        dashboard.activateTab(each.tab);
        TrackMenu::build(menu, context, window->section(each.tab).descriptor(), ids({plain}), std::nullopt);
        for (QAction* action : menu.actions()) {
            const QString text = action->text().section(u'\t', 0, 0);
            if (text == trash || (!each.removal.isEmpty() && text == each.removal))
                action->trigger();
        }
        EXPECT_EQ(dashboard.count("remove"), each.removal.isEmpty() ? 0 : 1);
        EXPECT_EQ(dashboard.count("trash"), each.trashes ? 1 : 0);
    }
}

TEST_F(RemovalKeysTest, TheStatusLineNamesWhatItTakesBack)
{
    auto* link = window->findChild<StatusStrip*>()->findChild<ThemeButton*>();
    show();
    EXPECT_FALSE(link->isVisible());
    history().registerUndo(
        QStringLiteral("Присвоить жанр"), [] {}, [] {});
    ASSERT_TRUE(link->isVisible());
    EXPECT_EQ(link->text(), QStringLiteral("Отменить: Присвоить жанр"));
}
