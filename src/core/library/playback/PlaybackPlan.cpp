#include "core/library/playback/PlaybackPlan.h"

#include <algorithm>

PlaybackPlan::Move PlaybackPlan::afterRemoving(const std::optional<TrackID>& current, const QSet<TrackID>& removed,
                                               const QList<Track>& rows)
{
    if (!current || !removed.contains(*current))
        return {};
    const auto place = std::ranges::find(rows, *current, &Track::id);
    if (place == rows.cend())
        return {};
    const auto survives = [&](const Track& row) { return !removed.contains(row.id()); };
    if (const auto behind = std::find_if(place, rows.cend(), survives); behind != rows.cend())
        return {Move::Kind::Play, *behind};
    const auto before = std::find_if(std::make_reverse_iterator(place), rows.crend(), survives);
    if (before != rows.crend())
        return {Move::Kind::Play, *before};
    return {Move::Kind::Stop, std::nullopt};
}
