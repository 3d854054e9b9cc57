#include "support/WindowFixture.h"

#include "ui/inspector/Inspector.h"
#include "ui/player/PlayerBar.h"

#include <QAction>

class CommandsTest : public WindowFixture {};

TEST_F(CommandsTest, TheTableNamesEachCommandOnce)
{
    QSet<QString> names;
    QHash<QKeySequence, QString> keys;
    const std::vector<Command>& all = Commands::all();
    ASSERT_EQ(static_cast<int>(all.size()), kCommandCount);
    for (size_t place = 0; place < all.size(); ++place) {
        const Command& command = all[place];
        EXPECT_EQ(static_cast<size_t>(command.id), place) << qPrintable(command.name);
        EXPECT_FALSE(names.contains(command.name) || command.name.isEmpty()) << qPrintable(command.name);
        names.insert(command.name);
        for (const QKeySequence& key : command.keys) {
            EXPECT_FALSE(keys.contains(key)) << qPrintable(command.name + u' ' + keys.value(key));
            keys.insert(key, command.name);
        }
    }
}

TEST_F(CommandsTest, NoRowIsTouchedThatTheSectionDoesNotShow)
{
    Track loved = favorite(QStringLiteral("a.mp3"));
    const Track plain = track(QStringLiteral("b.mp3"));
    const Track hidden = favorite(QStringLiteral("c.mp3"));
    fill({loved, plain, hidden});
    preferences.inspectorVisible.set(true);
    show();
    dashboard.activateTab(LibraryTab::Favorites);
    store->favorites().setFavoriteGenreFilter(loved.tags().genre);
    workspace().setSelection(ids({loved, plain}), plain.id()); // as an undo of another section would
    turn();
    EXPECT_EQ(window->inspector().model().ids(), ids({loved}));
    CommandCenter& commands = dashboard.commands();
    const std::pair<QSet<TrackID>, QSet<TrackID>> kCases[] = {
        {ids({loved, plain}), ids({loved})}, {ids({plain}), {}}, {ids({loved}), ids({loved})}};
    for (const CommandID id : {CommandID::Trash, CommandID::Remove, CommandID::AssignGenre, CommandID::Reveal}) {
        for (const auto& [given, acted] : kCases) {
            dashboard.calls.clear();
            EXPECT_EQ(commands.perform(id, {.ids = given}), !acted.isEmpty());
            EXPECT_EQ(dashboard.calls.isEmpty() ? QSet<TrackID>() : dashboard.calls.last().ids, acted);
        }
    }
    EXPECT_TRUE(commands.perform(CommandID::Favorite, {.ids = ids({plain}), .of = CommandTarget::Of::Player}))
        << "what plays need not stand in the section";
}
