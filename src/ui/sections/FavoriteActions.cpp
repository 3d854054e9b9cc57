#include "ui/sections/FavoriteActions.h"

#include "core/library/LibraryStore.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/selection/Selection.h"
#include "core/library/workspace/Workspace.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/sections/SectionFacts.h"
#include "ui/sections/SectionHeader.h"
#include "ui/sections/SectionView.h"
#include "ui/text/Texts.h"

#include <QAbstractItemView>

namespace {

bool isFiltered(const Favorites& favorites)
{
    return favorites.favoriteOnlyUntagged() || !favorites.favoriteGenreFilter().isEmpty();
}

} // namespace

FavoriteActions::FavoriteActions(const WindowContext& context, SectionView& page)
    : SectionParts(&page)
    , m_context(context)
    , m_convert(page.header().addAction())
    , m_clear(page.header().addLink())
{
    CommandCenter& commands = context.actions.commands();
    connect(m_convert, &QAbstractButton::clicked, this,
            [&page, &commands] { commands.perform(CommandID::SendToConversion, {.ids = page.selectedIDs()}); });
    connect(m_clear, &QAbstractButton::clicked, this, [&page, &commands] {
        commands.perform(CommandID::ClearFavoriteFilter);
        page.focusList(); // the link is gone
    });
    const auto follow = [this, &page] { m_convert->setEnabled(page.list().selectionModel()->hasSelection()); };
    connect(page.list().selectionModel(), &QItemSelectionModel::selectionChanged, m_convert, follow);
    connect(&context.store.workspace(), &Workspace::orderChanged, this, &FavoriteActions::refreshFilter);
    follow();
    retranslate();
}

void FavoriteActions::retranslate()
{
    m_convert->setContent(Texts::localized(QStringLiteral("В конвертер")));
    m_clear->setContent(Commands::text(CommandID::ClearFavoriteFilter), QStringLiteral("close"));
    refreshFilter();
}

void FavoriteActions::refreshFilter()
{
    m_clear->setVisible(isFiltered(m_context.store.favorites()));
}

QString FavoriteActions::facts(LibraryStore& library, const QList<Track>& rows)
{
    const Favorites& favorites = library.favorites();
    if (favorites.favoriteOnlyUntagged())
        return SectionFacts::tracks(rows, Texts::localized(QStringLiteral("только без жанра")));
    const QString genre = favorites.favoriteGenreFilter();
    const QString filter =
        genre.isEmpty() ? QString() : VelmoraLocalization::format(QStringLiteral("только жанр «%@»"), {genre});
    return SectionFacts::tracks(rows, filter);
}

QString FavoriteActions::hiddenBy(LibraryStore& library)
{
    const Favorites& favorites = library.favorites();
    if (!isFiltered(favorites) || library.selection().rowCount(LibraryTab::Favorites) == 0)
        return {};
    if (favorites.favoriteOnlyUntagged())
        return Texts::localized(QStringLiteral("У всех избранных треков есть жанр."));
    return VelmoraLocalization::format(QStringLiteral("Среди избранных нет треков с жанром «%@»."),
                                       {favorites.favoriteGenreFilter()});
}
