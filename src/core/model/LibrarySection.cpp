#include "core/model/LibrarySection.h"

namespace {

using List = Track::MetadataDestination;

const std::array<LibrarySection, kAllLibraryTabs.size()>& table()
{
    static const std::array<LibrarySection, kAllLibraryTabs.size()> kTable{{
        {.tab = LibraryTab::Playlist,
         .rawValue = QStringLiteral("Плейлист"),
         .holds = [](const Track& track) { return track.isInPlaylist(); },
         .isSortable = true},
        {.tab = LibraryTab::Favorites,
         .rawValue = QStringLiteral("Избранное"),
         .holds = [](const Track& track) { return track.isFavorite(); },
         .isSortable = true,
         .isFiltered = true},
        {.tab = LibraryTab::Covers,
         .rawValue = QStringLiteral("Обложки"),
         .holds = [](const Track& track) { return track.isInCoverWorkspace() || track.isFavorite(); }},
        {.tab = LibraryTab::Converter,
         .rawValue = QStringLiteral("Конвертер"),
         .holdsJobs = true,
         .ownsSelection = true,
         .takesOgg = true},
        {.tab = LibraryTab::Analysis, .rawValue = QStringLiteral("Анализ"), .list = List::Analysis},
        {.tab = LibraryTab::MusicalKey, .rawValue = QStringLiteral("Тональность"), .list = List::MusicalKey},
        {.tab = LibraryTab::Duplicates,
         .rawValue = QStringLiteral("Дубликаты"),
         .list = List::Duplicates,
         .ownsSelection = true},
    }};
    return kTable;
}

} // namespace

const LibrarySection& LibrarySection::of(LibraryTab tab)
{
    return table()[static_cast<size_t>(tab)];
}
