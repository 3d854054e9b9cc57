#pragma once

#include "core/model/TrackPopularitySortValue.h"
#include "core/model/TrackSort.h"

#include <QList>

#include <optional>
#include <span>
#include <vector>

/// The orders that a user may choose. Pure functions. Each text is turned into a sort key once per row at most, however
/// often the row is compared. Thread: any.
namespace TrackSorter {

/// What is known of tracks beyond their tags.
struct Inputs {
    const EstimatedBPMByTrackID& estimatedBPMByTrackID;
    const TrackPopularitySortValues& popularityByTrackID;
};

/// The number in a tempo text: the first run of digits with at most one comma or point, which may stand at either end,
/// so "128,5" is 128.5 and "~" is nothing. A run that is no such number is passed over.
std::optional<double> bpmNumber(const QString& text);
/// The tempo of a track: of its estimate where there is one, even if no number is in it, else of its tag.
std::optional<double> bpmValue(const Track& track, const EstimatedBPMByTrackID& estimatedBPMByTrackID);

/// The places of the tracks in the new order: the n-th element is the row that comes n-th. Equal rows keep their order
/// in both directions; what has no genre, tempo or rating comes last in both.
std::vector<int> order(std::span<const Track> tracks, TrackSortField field, TrackSortDirection direction,
                       const Inputs& inputs);
/// The tracks themselves in that order.
QList<Track> sorted(const QList<Track>& tracks, TrackSortField field, TrackSortDirection direction,
                    const EstimatedBPMByTrackID& estimatedBPMByTrackID,
                    const TrackPopularitySortValues& popularityByTrackID);

} // namespace TrackSorter
