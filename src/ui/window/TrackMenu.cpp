#include "ui/window/TrackMenu.h"

#include "core/library/LibraryStore.h"
#include "core/library/keys/Keys.h"
#include "core/library/quicklists/QuickLists.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/workspace/Workspace.h"
#include "playback/AudioPlayer.h"
#include "ui/context/DashboardActions.h"
#include "ui/tempo/TempoMenu.h"
#include "ui/text/Texts.h"
#include "ui/window/Sections.h"

#include <QMenu>

#include <algorithm>

namespace {

using Assign = void (DashboardActions::*)(const QString&, const QSet<TrackID>&);
constexpr int kLongMenu = 24; // rows that fit the smallest window

/// How many of the rows are favourites.
int favoriteCount(const WindowContext& context, const QSet<TrackID>& ids)
{
    const TrackList& tracks = context.store.workspace().tracks();
    return static_cast<int>(std::count_if(ids.begin(), ids.end(), [&](const TrackID& id) {
        const Track* track = tracks.find(id);
        return track && track->isFavorite();
    }));
}

/// A tag's text as a menu shows it: an ampersand is no mnemonic.
QString shown(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

void addValues(QMenu& menu, const WindowContext& context, const QStringList& values, Assign assign,
               const QSet<TrackID>& ids)
{
    for (const QString& value : values) {
        if (!value.isEmpty())
            menu.addAction(shown(value),
                           [&actions = context.actions, value, assign, ids] { (actions.*assign)(value, ids); });
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

void addGenres(QMenu& menu, const WindowContext& context, const QSet<TrackID>& ids)
{
    const QuickLists& lists = context.store.quickLists();
    const Assign assign = &DashboardActions::assignGenre;
    const QStringList recent = without(lists.recentGenres(), {});
    const QStringList quick = without(lists.quickGenreSlots(), recent);
    const QStringList others = without(lists.genres(), recent + quick);
    addValues(menu, context, recent, assign, ids);
    menu.addSeparator();
    addValues(menu, context, quick, assign, ids);
    menu.addSeparator();
    if (others.size() + quick.size() + recent.size() <= kLongMenu)
        addValues(menu, context, others, assign, ids);
    else
        addValues(*menu.addMenu(Texts::localized(QStringLiteral("Все жанры"))), context, others, assign, ids);
    menu.addSeparator();
    menu.addAction(Texts::localized(QStringLiteral("Очистить жанр")),
                   [&actions = context.actions, ids] { actions.clearGenres(ids); });
}

void addTagging(QMenu& menu, const WindowContext& context, const QSet<TrackID>& ids)
{
    const QuickLists& lists = context.store.quickLists();
    QMenu* genres = menu.addMenu(Texts::localized(QStringLiteral("Присвоить жанр")));
    addGenres(*genres, context, ids);
    QMenu* comments = menu.addMenu(Texts::localized(QStringLiteral("Присвоить комментарий")));
    addValues(*comments, context, lists.quickComments(), &DashboardActions::assignComment, ids);
    comments->addSeparator();
    comments->addAction(Texts::localized(QStringLiteral("Очистить комментарий")),
                        [&actions = context.actions, ids] { actions.clearComments(ids); });
    QMenu* albums = menu.addMenu(Texts::localized(QStringLiteral("Изменить альбом")));
    addValues(*albums, context, lists.albums(), &DashboardActions::assignAlbum, ids);
    albums->addSeparator();
    albums->addAction(Texts::localized(QStringLiteral("Очистить альбом")),
                      [&actions = context.actions, ids] { actions.assignAlbum(QString(), ids); });
    if (favoriteCount(context, ids) > 0)
        return;
    for (QMenu* each : {genres, comments, albums}) { // tags are assigned to favourites alone
        each->setEnabled(false);
        each->menuAction()->setToolTip(Texts::localized(QStringLiteral("Выберите трек в «Избранном»")));
    }
}

/// The picture of the files and the tags that they had at first.
void addFileEdits(QMenu& menu, const WindowContext& context, const QSet<TrackID>& ids)
{
    DashboardActions& actions = context.actions;
    QAction* cover = menu.addAction(Texts::localized(QStringLiteral("Присвоить обложку…")), [&actions, ids] {
        actions.chooseArtwork([&actions, ids](const QByteArray& image) { actions.assignArtwork(image, ids); });
    });
    QAction* restore = menu.addAction(Texts::localized(QStringLiteral("Вернуть исходные теги")),
                                      [&actions, ids] { actions.restoreOriginalTags(ids); });
    restore->setEnabled(context.store.tagWriting().canRestoreOriginalTags(ids));
    if (!context.store.workspace().artworkWritingIDs().intersects(ids))
        return;
    for (QAction* each : {cover, restore}) {
        each->setEnabled(false);
        each->setToolTip(Texts::localized(QStringLiteral("Подождите: обложка ещё сохраняется в файл")));
    }
}

void addMembership(QMenu& menu, const WindowContext& context, LibraryTab tab, const QSet<TrackID>& ids)
{
    DashboardActions& actions = context.actions;
    const int favorites = favoriteCount(context, ids);
    if (favorites < ids.size()) {
        QSet<TrackID> joining;
        for (const TrackID& id : ids) {
            const Track* track = context.store.workspace().tracks().find(id);
            if (track && !track->isFavorite())
                joining.insert(id);
        }
        menu.addAction(Texts::localized(QStringLiteral("Добавить в избранное")) + QStringLiteral("\tF"),
                       [&actions, joining] { actions.toggleFavorites(joining); });
    }
    if (favorites > 0)
        menu.addAction(Texts::localized(QStringLiteral("Убрать из избранного")) +
                           (favorites == ids.size() ? QStringLiteral("\tF") : QString()),
                       [&actions, ids] { actions.removeFromFavorites(ids); });
    if (tab == LibraryTab::Covers)
        menu.addAction(Texts::localized(QStringLiteral("Убрать из обложек")),
                       [&actions, ids] { actions.removeFromCovers(ids); });
}

/// What takes the rows away, apart from the section's own marks.
void addRemoval(QMenu& menu, const WindowContext& context, LibraryTab tab, const QSet<TrackID>& ids)
{
    DashboardActions& actions = context.actions;
    menu.addSeparator();
    const bool isOffered = tab == LibraryTab::Favorites || tab == LibraryTab::Covers; // with the membership
    if (const QString text = Texts::localized(Sections::of(tab).words.removal); !text.isEmpty() && !isOffered)
        menu.addAction(text + QStringLiteral("\tDel"), [&actions, tab, ids] { actions.removeFromSection(tab, ids); });
    QAction* trash =
        menu.addAction(Texts::localized(QStringLiteral("Переместить в Корзину")) + QStringLiteral("\tShift+Del"),
                       [&actions, ids] { actions.moveToTrash(ids); });
    trash->setToolTip(Texts::localized(QStringLiteral("Отмена вернёт файлы из Корзины на место")));
}

void addKeys(QMenu& menu, const WindowContext& context, const QSet<TrackID>& ids)
{
    DashboardActions& actions = context.actions;
    const Keys& keys = context.store.keys();
    QAction* analyze = menu.addAction(Texts::localized(QStringLiteral("Определить выбранные")),
                                      [&actions, ids] { actions.analyzeMusicalKey(ids); });
    analyze->setEnabled(
        std::ranges::any_of(ids, [&](const TrackID& id) { return keys.stateOf(id) == WorkState::None; }));
    QAction* write = menu.addAction(Texts::localized(QStringLiteral("Записать тональность")),
                                    [&actions, ids] { actions.writeAnalyzedMusicalKeys(ids); });
    write->setToolTip(Texts::localized(QStringLiteral("Сохраняет найденные коды Camelot, не изменяя остальные теги.")));
    write->setEnabled(
        std::ranges::any_of(ids, [&](const TrackID& id) { return keys.musicalKeyAnalyses().contains(id); }));
    menu.addSeparator();
}

void addPlayback(QMenu& menu, const WindowContext& context, const Track& track)
{
    const AudioPlayer& player = context.player;
    const bool isPlaying = player.isPlaying() && player.matchesCurrentTrack(track);
    const QString text = Texts::localized(isPlaying ? QStringLiteral("Пауза") : QStringLiteral("Воспроизвести"));
    menu.addAction(text + u'\t' + Texts::localized(QStringLiteral("Пробел")),
                   [&actions = context.actions, track] { actions.playTrack(track); });
    menu.addSeparator();
}

} // namespace

namespace TrackMenu {

void build(QMenu& menu, const WindowContext& context, LibraryTab tab, const QSet<TrackID>& ids,
           const std::optional<Track>& focused)
{
    DashboardActions& actions = context.actions;
    menu.setToolTipsVisible(true);
    if (focused)
        addPlayback(menu, context, *focused);
    if (LibrarySection::of(tab).holdsLibraryTracks()) {
        addMembership(menu, context, tab, ids);
        menu.addSeparator();
        addTagging(menu, context, ids);
        addFileEdits(menu, context, ids);
        TempoMenu::fill(*menu.addMenu(Texts::localized(QStringLiteral("Темп"))), context, ids);
        menu.addSeparator();
        menu.addAction(Texts::localized(QStringLiteral("Отправить в анализ")),
                       [&actions, ids] { actions.addToAnalysis(ids); });
        menu.addAction(Texts::localized(QStringLiteral("Отправить в конвертер")),
                       [&actions, ids] { actions.addToConversion(ids); });
        menu.addSeparator();
    }
    if (tab == LibraryTab::MusicalKey)
        addKeys(menu, context, ids);
    menu.addAction(Texts::localized(QStringLiteral("Открыть в Finder")),
                   [&actions, ids] { actions.revealInFileManager(ids); });
    if (Sections::of(tab).offersTrash)
        addRemoval(menu, context, tab, ids);
}

} // namespace TrackMenu
