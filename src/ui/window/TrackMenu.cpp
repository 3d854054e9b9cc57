#include "ui/window/TrackMenu.h"

#include "core/library/LibraryStore.h"
#include "core/library/quicklists/QuickLists.h"
#include "playback/AudioPlayer.h"
#include "ui/commands/CommandMenu.h"
#include "ui/context/DashboardActions.h"
#include "ui/sections/SectionDescriptor.h"
#include "ui/tempo/TempoMenu.h"
#include "ui/text/Texts.h"

#include <QMenu>

namespace {

using ID = CommandID;
constexpr int kLongMenu = 24; // rows that fit the smallest window

/// The rows of a menu, with what it needs to add commands for them.
struct Rows {
    CommandCenter& commands;
    QSet<TrackID> ids;

    QAction* add(QMenu& menu, ID id, const QString& text = {}) const
    {
        return CommandMenu::add(menu, commands, id, {.ids = ids}, text);
    }
    CommandState state(ID id) const { return commands.state(id, {.ids = ids}); }
};

/// Values stand in a menu that is enabled as a whole.
void addValues(QMenu& menu, const Rows& rows, const QStringList& values, ID assign)
{
    for (const QString& value : values) {
        QString shown = value;
        shown.replace(u'&', QStringLiteral("&&")); // it is no mnemonic
        if (!value.isEmpty())
            menu.addAction(shown, [&commands = rows.commands, assign, ids = rows.ids, value] {
                commands.perform(assign, {.ids = ids, .text = value});
            });
    }
}

QStringList without(const QStringList& values, const QStringList& dropped)
{
    QStringList rest;
    for (const QString& value : values) {
        if (!value.isEmpty() && !dropped.contains(value) && !rest.contains(value))
            rest.append(value);
    }
    return rest;
}

void addGenres(QMenu& menu, const Rows& rows, const QuickLists& lists)
{
    const QStringList recent = without(lists.recentGenres(), {});
    const QStringList quick = without(lists.quickGenreSlots(), recent);
    const QStringList others = without(lists.genres(), recent + quick);
    addValues(menu, rows, recent, ID::AssignGenre);
    menu.addSeparator();
    addValues(menu, rows, quick, ID::AssignGenre);
    menu.addSeparator();
    if (others.size() + quick.size() + recent.size() <= kLongMenu)
        addValues(menu, rows, others, ID::AssignGenre);
    else
        addValues(*menu.addMenu(Texts::localized(QStringLiteral("Все жанры"))), rows, others, ID::AssignGenre);
}

/// The menu of the values of one field, and of nothing.
QMenu& addField(QMenu& menu, const Rows& rows, ID assign)
{
    QMenu* field = menu.addMenu(Commands::text(assign));
    const CommandState state = rows.state(assign);
    field->setEnabled(state.isEnabled);
    field->menuAction()->setToolTip(Texts::localized(state.reason));
    return *field;
}

void addTagging(QMenu& menu, const Rows& rows, const QuickLists& lists)
{
    QMenu& genres = addField(menu, rows, ID::AssignGenre);
    addGenres(genres, rows, lists);
    genres.addSeparator();
    rows.add(genres, ID::ClearGenre);
    QMenu& comments = addField(menu, rows, ID::AssignComment);
    addValues(comments, rows, lists.quickComments(), ID::AssignComment);
    comments.addSeparator();
    rows.add(comments, ID::ClearComment);
    QMenu& albums = addField(menu, rows, ID::AssignAlbum);
    addValues(albums, rows, lists.albums(), ID::AssignAlbum);
    albums.addSeparator();
    rows.add(albums, ID::ClearAlbum);
    rows.add(menu, ID::AssignCover);
    rows.add(menu, ID::RestoreTags);
}

/// One key does both, so it stands beside whatever it would do.
void addMembership(QMenu& menu, const Rows& rows)
{
    const QString key = u'\t' + Commands::keys(ID::Favorite);
    const bool canAdd = rows.state(ID::AddToFavorites).isEnabled;
    if (canAdd)
        rows.add(menu, ID::AddToFavorites, Commands::text(ID::AddToFavorites) + key);
    if (rows.state(ID::RemoveFromFavorites).isEnabled)
        rows.add(menu, ID::RemoveFromFavorites, Commands::text(ID::RemoveFromFavorites) + (canAdd ? QString() : key));
}

void addPlayback(QMenu& menu, const WindowContext& context, const Track& track)
{
    const bool isPlaying = context.player.isPlaying() && context.player.matchesCurrentTrack(track);
    const QString text = isPlaying ? Texts::localized(QStringLiteral("Пауза")) : Commands::text(ID::PlayRow);
    CommandMenu::add(menu, context.actions.commands(), ID::PlayRow, {.track = track},
                     text + u'\t' + Commands::keys(ID::PlayPause));
    menu.addSeparator();
}

/// What takes the rows away.
void addRemoval(QMenu& menu, const Rows& rows, const SectionDescriptor& section)
{
    menu.addSeparator();
    const bool isThere = section.words.removal == Commands::of(ID::RemoveFromFavorites).text; // with the membership
    if (!section.words.removal.isEmpty() && !isThere)
        rows.add(menu, ID::Remove, Texts::localized(section.words.removal));
    if (Commands::of(ID::Trash).isIn(section.section()))
        rows.add(menu, ID::Trash);
}

} // namespace

namespace TrackMenu {

void build(QMenu& menu, const WindowContext& context, const SectionDescriptor& section, const QSet<TrackID>& ids,
           const std::optional<Track>& focused)
{
    const Rows rows{context.actions.commands(), ids};
    menu.setToolTipsVisible(true);
    if (focused)
        addPlayback(menu, context, *focused);
    if (section.section().holdsLibraryTracks()) {
        addMembership(menu, rows);
        menu.addSeparator();
        addTagging(menu, rows, context.store.quickLists());
        TempoMenu::fill(*menu.addMenu(Texts::localized(QStringLiteral("Темп"))), context, ids);
        menu.addSeparator();
        rows.add(menu, ID::SendToAnalysis);
        rows.add(menu, ID::SendToConversion);
        menu.addSeparator();
    }
    for (const ID id : {ID::AnalyzeKeys, ID::WriteKeys}) {
        if (Commands::of(id).isIn(section.section()))
            rows.add(menu, id);
    }
    if (!section.section().holdsLibraryTracks() && Commands::of(ID::RestoreTags).isIn(section.section()))
        rows.add(menu, ID::RestoreTags);
    menu.addSeparator();
    rows.add(menu, ID::Reveal);
    addRemoval(menu, rows, section);
}

} // namespace TrackMenu
