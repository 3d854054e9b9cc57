#include "core/library/order/Order.h"

#include "async/MainQueue.h"
#include "core/library/results/TempoResults.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "work/Scheduler.h"

Order::Order(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_playlistChoice(m_dependencies.preferences.playlistSortField, m_dependencies.preferences.playlistSortDirection)
    , m_favoriteChoice(m_dependencies.preferences.favoriteSortField, m_dependencies.preferences.favoriteSortDirection)
    , m_refresh(m_dependencies.clock, m_dependencies.scheduler)
{
    readFilter();
    connect(&m_dependencies.workspace, &Workspace::tracksUpkeep, this, &Order::tracksChanged);
    connect(&m_refresh, &SortRefresh::due, this, &Order::reorder);
    connect(&m_dependencies.preferences, &Preferences::changed, this, &Order::preferenceChanged);
    connect(&m_dependencies.notifications, &Notifications::velmoraLanguageDidChange, this, &Order::languageChanged);
}

void Order::readFilter()
{
    m_filter = {m_dependencies.preferences.favoriteGenreFilter.get(),
                m_dependencies.preferences.favoriteOnlyUntagged.get()};
}

void Order::preferenceChanged(const QString& key)
{
    const Preferences& preferences = m_dependencies.preferences;
    if (key == preferences.favoriteGenreFilter.key() || key == preferences.favoriteOnlyUntagged.key())
        readFilter();
    if (m_playlistChoice.preferenceChanged(key))
        choiceChanged(LibraryTab::Playlist);
    if (m_favoriteChoice.preferenceChanged(key))
        choiceChanged(LibraryTab::Favorites);
}

/// Each language has an order of its own, so nothing of the old one can be kept.
void Order::languageChanged()
{
    m_isAdopted = false;
    m_base = PlaylistBase();
    m_isBaseValid = false;
    m_folderSorts.clear();
    m_favorites.forget();
    invalidatePlaylistSort();
    m_dependencies.workspace.noteOrderChange();
}

const QList<Track>& Order::baseRows()
{
    if (!m_isBaseValid) {
        m_base.rebuild(m_dependencies.workspace.tracks());
        ++m_baseOrders;
        m_isBaseValid = true;
        m_sections.reset();
        invalidatePlaylistSort();
    }
    return m_base.rows().rows();
}

const QList<Track>& Order::playlistTracks()
{
    const QList<Track>& base = baseRows();
    const FolderSorts::Key& key = m_playlistChoice.key();
    if (key.field == TrackSortField::Original) {
        m_folderSorts.clear();
        m_areRowsFinished = false;
        return base;
    }
    if (!m_areRowsFinished)
        m_folderSorts.update(base, playlistFolderSections(), key, {m_dependencies.tempo.estimates(), m_popularity});
    m_areRowsFinished = true;
    return m_folderSorts.rows();
}

const std::vector<Order::PlaylistFolderSection>& Order::playlistFolderSections()
{
    baseRows();
    if (!m_sections)
        m_sections = m_base.sections();
    return *m_sections;
}

const QList<Track>& Order::favoriteTracks()
{
    return m_favorites.rows(m_dependencies.workspace.tracks(), m_filter, m_favoriteChoice.key(),
                            m_dependencies.tempo.estimates());
}

QList<Track> Order::coverTracks() const
{
    QList<Track> rows;
    for (const Track& track : m_dependencies.workspace.tracks()) {
        if (track.isInCoverWorkspace() || track.isFavorite())
            rows.append(track);
    }
    return rows;
}

void Order::adopt(PlaylistBase base, AppLanguage language)
{
    if (language != VelmoraLocalization::language())
        return;
    m_base = std::move(base);
    m_isBaseValid = true;
    m_isAdopted = true;
    m_sections.reset();
}

void Order::tracksChanged(const ListChange& change)
{
    m_favorites.tracksChanged(m_dependencies.workspace.tracks(), change);
    if (std::exchange(m_isAdopted, false)) {
        m_folderSorts.clear();
        invalidatePlaylistSort();
        return;
    }
    if (!m_isBaseValid)
        return;
    switch (change.kind) {
    case ListChange::Kind::Contents:
        contentsChanged(change);
        return;
    case ListChange::Kind::Appended:
        m_base.append(m_dependencies.workspace.tracks(), change.first);
        m_sections.reset();
        invalidatePlaylistSort();
        return;
    case ListChange::Kind::Removed:
        rowsRemoved(change);
        return;
    case ListChange::Kind::Structure:
        m_isBaseValid = false;
        return;
    }
}

void Order::contentsChanged(const ListChange& change)
{
    const std::optional<QList<int>> refreshed = m_base.refresh(m_dependencies.workspace.tracks(), change.rows);
    m_isBaseValid = refreshed.has_value();
    if (!refreshed)
        return;
    const bool isPatch = change.cause == ListChange::Cause::FavoriteFlags;
    const bool isFrozen = m_refresh.isScrolling() || change.cause == ListChange::Cause::TagBatch;
    if (!isPatch && !isFrozen) {
        invalidatePlaylistSort();
        return;
    }
    using Placing = FolderSorts::Placing;
    if (m_areRowsFinished)
        m_folderSorts.refresh(m_base.rows().rows(), *refreshed, isPatch ? Placing::Same : Placing::Owed);
    if (!isPatch)
        m_refresh.oweMetadata();
}

/// Rows that stay behind keep their order. What was owed to them is paid: the list moves anyhow.
void Order::rowsRemoved(const ListChange& change)
{
    const TrackList& tracks = m_dependencies.workspace.tracks();
    QList<TrackID> gone = change.gone;
    QList<int> stayed;
    for (const int row : change.rows) {
        if (tracks.at(row).isInPlaylist())
            stayed.append(row);
        else
            gone.append(tracks.at(row).id());
    }
    const QList<int> baseRows = m_base.remove(gone);
    m_sections.reset();
    if (m_areRowsFinished)
        m_folderSorts.remove(baseRows, playlistFolderSections());
    else
        m_folderSorts.clear();
    m_isBaseValid = m_base.refresh(tracks, stayed).has_value();
    invalidatePlaylistSort();
}

/// Carries out what was owed, and lets the views know.
void Order::reorder()
{
    invalidatePlaylistSort();
    m_favorites.forget();
    m_dependencies.workspace.noteOrderChange();
}

FolderSorts::Key Order::sortKey(LibraryTab tab) const
{
    switch (tab) {
    case LibraryTab::Playlist:
        return m_playlistChoice.key();
    case LibraryTab::Favorites:
        return m_favoriteChoice.key();
    default:
        return {};
    }
}

void Order::setTrackSortField(TrackSortField field, LibraryTab tab)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const bool comesToRating =
        tab == LibraryTab::Playlist && field == TrackSortField::Rating && trackSortField(tab) != TrackSortField::Rating;
    choose(tab, {field, comesToRating ? TrackSortDirection::Descending : trackSortDirection(tab)});
}

void Order::setTrackSortDirection(TrackSortDirection direction, LibraryTab tab)
{
    VELMORA_ASSERT_MAIN_THREAD();
    choose(tab, {trackSortField(tab), direction});
}

void Order::activateFavoriteSortFromHeader(TrackSortField field)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (field == TrackSortField::Original)
        return;
    const FolderSorts::Key& present = m_favoriteChoice.key();
    const bool turns = field == present.field && present.direction == TrackSortDirection::Ascending;
    choose(LibraryTab::Favorites, {field, turns ? TrackSortDirection::Descending : TrackSortDirection::Ascending});
}

void Order::choose(LibraryTab tab, const FolderSorts::Key& key)
{
    const bool isSortable = tab == LibraryTab::Playlist || tab == LibraryTab::Favorites;
    SortChoice& choice = tab == LibraryTab::Playlist ? m_playlistChoice : m_favoriteChoice;
    if (isSortable && choice.set(key))
        choiceChanged(tab);
}

void Order::choiceChanged(LibraryTab tab)
{
    if (tab == LibraryTab::Playlist)
        invalidatePlaylistSort();
    m_dependencies.workspace.noteOrderChange();
}

void Order::setPlaylistScrolling(bool scrolling)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_refresh.isScrolling() == scrolling)
        return;
    m_refresh.setScrolling(scrolling);
    m_dependencies.scheduler.setScrolling(scrolling);
    if (!scrolling)
        m_refresh.schedule();
}

void Order::adoptTempoTables(TempoTables tables)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const bool changes = m_dependencies.tempo.estimates() != tables.estimatedBPMByTrackID;
    m_dependencies.tempo.assign(std::move(tables));
    if (!changes)
        return;
    m_folderSorts.forgetInputs();
    reorder();
}

void Order::setEstimatedBPM(const TrackID& id, const std::optional<QString>& text)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_dependencies.tempo.setEstimate(id, text))
        return;
    const TrackSortField field = m_playlistChoice.key().field;
    const bool movesPlaylist = field == TrackSortField::BPM || field == TrackSortField::Rating;
    const bool movesFavorites = m_favoriteChoice.key().field == TrackSortField::BPM;
    m_folderSorts.forgetBPM(); // whatever is chosen by now, as with ratings
    if (!movesFavorites)
        m_favorites.forgetBPM();
    if (movesPlaylist || movesFavorites)
        m_refresh.oweBPM();
}

void Order::updatePlaylistPopularitySortValues(const TrackPopularitySortValues& values)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_popularity == values)
        return;
    m_popularity = values;
    m_folderSorts.forgetPopularity(); // whatever is chosen by now: a sort that nobody asked for since may come back
    if (m_playlistChoice.key().field != TrackSortField::Rating)
        return;
    if (m_refresh.isScrolling())
        m_refresh.owePopularity();
    else
        reorder();
}
