#include "core/library/tempo/TempoProgress.h"

bool TempoProgress::hasTag(const Track& track)
{
    return !QStringView(track.tags().bpm).trimmed().isEmpty();
}

void TempoProgress::estimateChanged(const Track& row, bool hasEstimate)
{
    if (m_count && row.isInPlaylist() && !hasTag(row))
        m_count->done += hasEstimate ? 1 : -1;
}

WorkProgress TempoProgress::of(const TrackList& tracks, const TempoResults& results, const WorkProgress& batch)
{
    if (!m_count) {
        m_count.emplace();
        for (const Track& track : tracks) {
            if (!track.isInPlaylist())
                continue;
            ++m_count->total;
            m_count->done += hasTag(track) || results.hasEstimate(track.id());
        }
    }
    return m_count->done < m_count->total ? *m_count : batch; // else others are queued
}
