#pragma once

#include "core/library/order/FavoritesOrder.h"
#include "core/library/order/SortChoice.h"
#include "core/library/order/SortRefresh.h"
#include "core/model/LibraryTab.h"
#include "platform/Localization.h"

#include <QObject>

class Notifications;
class Preferences;
class Scheduler;
class TempoResults;
class Workspace;
struct TempoTables;

/// The display order of the playlist and of Favorites. The playlist's base order is by folder and file name; a field of
/// the user's choice reorders within each folder. While the list scrolls or a batch of tags is applied the order is
/// frozen: rows get their new values where they stand. docs/order.md tells the layers. Thread: main.
class Order : public QObject {
public:
    using PlaylistFolderSection = PlaylistBase::FolderSection;

    struct Dependencies {
        Workspace& workspace;
        TempoResults& tempo;
        Preferences& preferences;
        Notifications& notifications;
        Scheduler& scheduler;
        async::Clock& clock;
    };

    explicit Order(const Dependencies& dependencies);

    /// The playlist in display order.
    const QList<Track>& playlistTracks();
    /// The folders of playlistTracks(); they have the same places in every order.
    const std::vector<PlaylistFolderSection>& playlistFolderSections();
    /// Favourites that pass the filter, in display order.
    const QList<Track>& favoriteTracks();
    /// Tracks of Covers, in list order.
    QList<Track> coverTracks() const;
    /// Whether the filter of Favorites lets a track through; whether it is a favourite is not asked.
    bool passesFavoriteFilter(const Track& track) const { return m_filter.passes(track); }

    /// What a section is sorted by; the base order for sections that are never sorted.
    TrackSortField trackSortField(LibraryTab tab) const { return sortKey(tab).field; }
    /// Which end comes first in a section; ascending for sections that are never sorted.
    TrackSortDirection trackSortDirection(LibraryTab tab) const { return sortKey(tab).direction; }
    /// Sorts the playlist or Favorites by a field. The playlist turns to descending when it comes to be sorted by
    /// rating.
    void setTrackSortField(TrackSortField field, LibraryTab tab);
    /// Turns the order of the playlist or of Favorites.
    void setTrackSortDirection(TrackSortDirection direction, LibraryTab tab);
    /// A click on a column heading of Favorites: sorts by another field ascending, turns the present one.
    void activateFavoriteSortFromHeader(TrackSortField field);

    /// Whether the playlist is in motion; freezes its order. Work in the background learns of it from here.
    void setPlaylistScrolling(bool scrolling);
    /// As setPlaylistScrolling() was last told.
    bool playlistIsScrolling() const { return m_refresh.isScrolling(); }
    /// Reading of tags came to an end: a second later the playlist is put in order, if rows changed while that had to
    /// wait.
    void scheduleMetadataSortRefresh() { m_refresh.schedule(); }

    /// Takes the tempo tables of a session over.
    void adoptTempoTables(TempoTables tables);
    /// Stores or removes the estimate of a track. The order follows with settleBPMSort().
    void setEstimatedBPM(const TrackID& id, const std::optional<QString>& text);
    /// Whether tempos are being searched for or set in many steps: the order waits for their end.
    void setSearchingTempo(bool isSearching) { m_refresh.setSearchingTempo(isSearching); }
    /// A round of tempo analysis ended: lists sorted by tempo are put in order, unless that has to wait.
    /// \return whether they were.
    bool settleBPMSort() { return m_refresh.settleBPM(); }
    /// Takes the ratings over that the playlist may be sorted by; a playlist in motion is put in order when it has
    /// come to rest.
    void updatePlaylistPopularitySortValues(const TrackPopularitySortValues& values);
    /// Whether a section has ratings that it could be sorted by: the playlist, once there are any.
    bool hasRatings(LibraryTab tab) const { return tab == LibraryTab::Playlist && !m_popularity.isEmpty(); }

    /// Takes the base order of the rows that the main list gets next, made elsewhere, if it is of the present language.
    void adopt(PlaylistBase base, AppLanguage language);
    /// Upkeep after a change of the main list, before others hear of it.
    void tracksChanged(const ListChange& change);

    /// How often orders were made, for tests and measurements.
    struct Work {
        int baseOrders = 0;    ///< base orders made anew
        int folderSorts = 0;   ///< folders sorted by the user's choice
        int favoriteSorts = 0; ///< Favorites sorted
        bool operator==(const Work&) const = default;
    };
    Work work() const { return {m_baseOrders, m_folderSorts.sortCount(), m_favorites.sortCount()}; }

private:
    void readFilter();
    void preferenceChanged(const QString& key);
    void languageChanged();
    void reorder();
    void invalidatePlaylistSort() { m_areRowsFinished = false; }
    void contentsChanged(const ListChange& change);
    void rowsRemoved(const ListChange& change);
    const QList<Track>& baseRows();
    FolderSorts::Key sortKey(LibraryTab tab) const;
    void choose(LibraryTab tab, const FolderSorts::Key& key);
    void choiceChanged(LibraryTab tab);

    Dependencies m_dependencies;
    SortChoice m_playlistChoice;
    SortChoice m_favoriteChoice;
    FavoriteFilter m_filter;
    TrackPopularitySortValues m_popularity;

    PlaylistBase m_base;
    bool m_isBaseValid = true;
    int m_baseOrders = 0;
    bool m_isAdopted = false; ///< the base knows the rows that come next
    std::optional<std::vector<PlaylistFolderSection>> m_sections;
    FolderSorts m_folderSorts;
    bool m_areRowsFinished = false; ///< whether those of m_folderSorts are the answer
    FavoritesOrder m_favorites;
    SortRefresh m_refresh;
};
