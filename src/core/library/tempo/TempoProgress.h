#pragma once

#include "core/library/results/TempoResults.h"
#include "core/library/workspace/TrackList.h"
#include "work/WorkLine.h"

#include <optional>

/// How far tempo analysis is, as the user sees it: rows of the playlist that have a tempo, of all of them; where others
/// are analysed, of the batch. Counts the rows once and keeps the count up to date. Thread: main.
class TempoProgress {
public:
    /// The list differs from what was counted.
    void forget() { m_count.reset(); }
    /// A row of the list gets or loses its estimate, so that the count need not be made anew.
    void estimateChanged(const Track& row, bool hasEstimate);
    /// \param batch of the queue, which is not empty.
    WorkProgress of(const TrackList& tracks, const TempoResults& results, const WorkProgress& batch);

    /// Whether the tag tells a tempo: anything but white space is believed.
    static bool hasTag(const Track& track);

private:
    std::optional<WorkProgress> m_count;
};
