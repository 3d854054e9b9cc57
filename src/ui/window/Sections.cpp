#include "ui/window/Sections.h"

#include "core/library/LibraryStore.h"
#include "core/library/order/Order.h"
#include "ui/cells/TrackColumns.h"
#include "ui/covers/CoverAssignment.h"
#include "ui/keys/KeySection.h"
#include "ui/sections/ConversionRows.h"
#include "ui/sections/FavoriteActions.h"
#include "ui/sections/SectionFacts.h"
#include "ui/sections/SectionView.h"
#include "ui/tracks/RowLayout.h"

namespace {

/// The headers of the playlist.
QList<FolderRun> playlistFolders(LibraryStore& library)
{
    QList<FolderRun> runs;
    const auto& sections = library.order().playlistFolderSections();
    runs.reserve(sections.size());
    for (const Order::PlaylistFolderSection& section : sections)
        runs.append({section.folder, section.first, section.end});
    return runs;
}

template <typename Parts>
SectionParts* make(const WindowContext& context, SectionView& page)
{
    return new Parts(context, page);
}

SectionDescriptor playlist()
{
    return {.tab = LibraryTab::Playlist,
            .icon = QStringLiteral("playlist"),
            .words = {.title = QStringLiteral("Плейлист"),
                      .empty = QStringLiteral("Плейлист пуст. Добавьте треки, чтобы начать подготовку."),
                      .removal = QStringLiteral("Убрать из плейлиста")},
            .columns = &TrackColumns::playlist,
            .facts = &SectionFacts::playlist,
            .folders = &playlistFolders,
            .remembersScrolling = true};
}

SectionDescriptor favorites()
{
    return {.tab = LibraryTab::Favorites,
            .icon = QStringLiteral("heart"),
            .words = {.title = QStringLiteral("Избранное"),
                      .empty = QStringLiteral("Отмечайте треки сердцем, и они соберутся здесь."),
                      .removal = QStringLiteral("Убрать из избранного")},
            .columns = &TrackColumns::full,
            .facts = &FavoriteActions::facts,
            .makeParts = &make<FavoriteActions>,
            .hiddenBy = &FavoriteActions::hiddenBy,
            .sortsByHeadings = true};
}

SectionDescriptor covers()
{
    return {.tab = LibraryTab::Covers,
            .icon = QStringLiteral("picture"),
            .words = {.title = QStringLiteral("Обложки"),
                      .empty = QStringLiteral("Здесь появятся обложки избранных и добавленных треков."),
                      .addFromMenu = QStringLiteral("Добавить файлы в обложки…"),
                      .removal = QStringLiteral("Убрать из обложек")},
            .columns = &TrackColumns::covers,
            .facts = &CoverAssignment::facts,
            .makeList = &CoverAssignment::makeGrid,
            .makeParts = &make<CoverAssignment>};
}

SectionDescriptor converter()
{
    return {
        .tab = LibraryTab::Converter,
        .icon = QStringLiteral("convert"),
        .words = {.title = QStringLiteral("Конвертер"),
                  .empty = QStringLiteral("Очередь конвертера пуста."),
                  .accepted = QStringLiteral("Сюда можно перетащить файлы и папки: MP3, FLAC, WAV, AIFF, M4A, OGG")},
        .columns = &TrackColumns::conversion,
        .facts = &SectionFacts::files,
        .rows = &ConversionRows::rows,
        .statusTexts = &ConversionRows::statusTexts,
        .navigates = &Notifications::velmoraNavigateConversionItems};
}

SectionDescriptor analysis()
{
    return {.tab = LibraryTab::Analysis,
            .icon = QStringLiteral("pulse"),
            .words = {.title = QStringLiteral("Анализ качества"),
                      .empty = QStringLiteral("Добавьте файлы, чтобы проверить качество звука."),
                      .removal = QStringLiteral("Убрать из анализа")},
            .columns = &TrackColumns::brief,
            .facts = &SectionFacts::files};
}

SectionDescriptor musicalKey()
{
    return {.tab = LibraryTab::MusicalKey,
            .icon = QStringLiteral("note"),
            .words = {.title = QStringLiteral("Определение тональности"),
                      .empty = QStringLiteral("Добавьте файлы для определения тональности"),
                      .addFromMenu = QStringLiteral("Добавить файлы в тональность…"),
                      .removal = QStringLiteral("Удалить из тональности")},
            .columns = &TrackColumns::keys,
            .facts = &KeySection::facts,
            .makeParts = &make<KeySection>};
}

SectionDescriptor duplicates()
{
    return {.tab = LibraryTab::Duplicates,
            .icon = QStringLiteral("copies"),
            .words = {.title = QStringLiteral("Поиск дубликатов"),
                      .empty = QStringLiteral("Добавьте папки, в которых нужно искать одинаковые треки."),
                      .accepted = QStringLiteral("Сюда можно перетащить папки и файлы"),
                      .add = QStringLiteral("Добавить папки…")},
            .columns = &TrackColumns::brief,
            .facts = &SectionFacts::duplicates,
            .navigates = &Notifications::velmoraNavigateDuplicateItems};
}

} // namespace

namespace Sections {

const SectionDescriptor& of(LibraryTab tab)
{
    static const std::array<SectionDescriptor, kAllLibraryTabs.size()> kSections{
        playlist(), favorites(), covers(), converter(), analysis(), musicalKey(), duplicates()};
    return kSections[static_cast<size_t>(tab)];
}

} // namespace Sections
