#pragma once

#include "core/model/Track.h"

#include <QHash>

#include <optional>

/// How popular a track is, as the sort by rating compares it. A higher tier is more popular.
struct TrackPopularitySortValue {
    int tier = 0;
    bool isDirectSignal = false;      ///< told of this very track, not of its artist
    std::optional<int> bestChartRank; ///< 1 is the best
    std::optional<int> poolTier;      ///< present where a record pool knows the track

    bool operator==(const TrackPopularitySortValue&) const = default;
};

using TrackPopularitySortValues = QHash<TrackID, TrackPopularitySortValue>;
/// Tempo texts that an estimate gave, which stand before the tag.
using EstimatedBPMByTrackID = QHash<TrackID, QString>;
