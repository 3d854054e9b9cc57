#pragma once

#include "core/library/order/FolderSorts.h"
#include "core/library/workspace/TrackList.h"

#include <optional>

/// Which favourites are shown: all, those of a genre, or those without one.
struct FavoriteFilter {
    QString genre; ///< exactly as in the tags; empty for all
    bool onlyUntagged = false;

    /// Whether a favourite is shown; whether the track is one is not asked.
    bool passes(const Track& track) const;
    bool operator==(const FavoriteFilter&) const = default;
};

/// The rows of Favorites, kept until something moves them. A value; no thread of its own.
class FavoritesOrder {
public:
    /// Favourites that pass the filter, in the order of the key: by default grouped by genre, the ones without a genre
    /// last, then by name.
    const QList<Track>& rows(const TrackList& tracks, const FavoriteFilter& filter, const FolderSorts::Key& key,
                             const EstimatedBPMByTrackID& estimatedBPMByTrackID);
    /// Upkeep after a change of the list: new values are taken, rows that left are dropped, all else is forgotten.
    void tracksChanged(const TrackList& tracks, const ListChange& change);
    /// The next call of rows() sorts anew.
    void forget() { m_rows.reset(); }
    /// Forgets them if they were sorted by tempo.
    void forgetBPM()
    {
        if (m_key.field == TrackSortField::BPM)
            forget();
    }

    /// The default order of favourites. Without the numeric part of the playlist's order: "10" comes before "2".
    static QList<Track> byGenre(const QList<Track>& tracks);

    /// Sorts so far.
    int sortCount() const { return m_sortCount; }

private:
    bool takeChanges(const TrackList& tracks, const ListChange& change);

    std::optional<TrackList> m_rows;
    FavoriteFilter m_filter;
    FolderSorts::Key m_key;
    int m_sortCount = 0;
};
