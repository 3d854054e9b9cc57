#include "core/library/order/FavoritesOrder.h"

#include "core/library/order/LazySortKey.h"
#include "core/library/workspace/Rows.h"

#include <algorithm>

namespace {

/// Whether no order of favourites tells the two values of a track apart.
bool sortsAlike(const Track& left, const Track& right)
{
    const AudioTags& leftTags = left.tags();
    const AudioTags& rightTags = right.tags();
    return leftTags.title == rightTags.title && leftTags.genre == rightTags.genre && leftTags.bpm == rightTags.bpm &&
           left.format() == right.format() && left.url() == right.url();
}

} // namespace

bool FavoriteFilter::passes(const Track& track) const
{
    if (onlyUntagged)
        return track.tags().genre.trimmed().isEmpty();
    return genre.isEmpty() || track.tags().genre == genre;
}

QList<Track> FavoritesOrder::byGenre(const QList<Track>& tracks)
{
    struct Row {
        LazySortKey genre;
        LazySortKey name;
        const Track* track;
    };
    std::vector<Row> rows;
    rows.reserve(size_t(tracks.size()));
    for (const Track& track : tracks)
        rows.push_back({{track.tags().genre.trimmed(), &Collation::caseInsensitiveSortKey},
                        {track.displayTitle(), &Collation::caseInsensitiveSortKey},
                        &track});
    std::vector<Row*> order;
    for (Row& row : rows)
        order.push_back(&row);
    std::ranges::stable_sort(order, [](Row* left, Row* right) {
        if (left->genre.isEmpty() != right->genre.isEmpty())
            return right->genre.isEmpty();
        if (const int genres = LazySortKey::compare(left->genre, right->genre))
            return genres < 0;
        return LazySortKey::compare(left->name, right->name) < 0;
    });
    QList<Track> sorted;
    sorted.reserve(tracks.size());
    for (const Row* row : order)
        sorted.append(*row->track);
    return sorted;
}

const QList<Track>& FavoritesOrder::rows(const TrackList& tracks, const FavoriteFilter& filter,
                                         const FolderSorts::Key& key,
                                         const EstimatedBPMByTrackID& estimatedBPMByTrackID)
{
    if (m_rows && m_filter == filter && m_key == key)
        return m_rows->rows();
    QList<Track> rows;
    for (const Track& track : tracks) {
        if (track.isFavorite() && filter.passes(track))
            rows.append(track);
    }
    m_filter = filter;
    m_key = key;
    m_rows.emplace();
    m_rows->assign(key.field == TrackSortField::Original
                       ? byGenre(rows)
                       : TrackSorter::sorted(rows, key.field, key.direction, estimatedBPMByTrackID, {}));
    ++m_sortCount;
    return m_rows->rows();
}

void FavoritesOrder::tracksChanged(const TrackList& tracks, const ListChange& change)
{
    if (!m_rows)
        return;
    const auto belongs = [this](const Track& track) { return track.isFavorite() && m_filter.passes(track); };
    switch (change.kind) {
    case ListChange::Kind::Contents:
    case ListChange::Kind::Removed:
        if (!takeChanges(tracks, change))
            forget();
        return;
    case ListChange::Kind::Appended:
        if (std::any_of(tracks.begin() + change.first, tracks.end(), belongs))
            forget();
        return;
    case ListChange::Kind::Structure:
        forget();
        return;
    }
}

/// \return false if a row joined or may have another place now.
bool FavoritesOrder::takeChanges(const TrackList& tracks, const ListChange& change)
{
    QList<Track> rows = m_rows->rows();
    QList<int> gone;
    for (const TrackID& id : change.gone) {
        if (const std::optional<int> row = m_rows->indexOf(id))
            gone.append(*row);
    }
    bool isTouched = !gone.isEmpty();
    for (const int changed : change.rows) {
        const Track& track = tracks.at(changed);
        const std::optional<int> row = m_rows->indexOf(track.id());
        const bool belongs = track.isFavorite() && m_filter.passes(track);
        if (belongs && (!row || !sortsAlike(track, m_rows->at(*row))))
            return false;
        if (!row)
            continue;
        isTouched = true;
        if (belongs)
            rows[*row] = track;
        else
            gone.append(*row);
    }
    if (!isTouched)
        return true;
    if (!gone.isEmpty()) {
        std::ranges::sort(gone);
        rows = Rows::without(rows, gone);
    }
    m_rows->assign(std::move(rows));
    return true;
}
