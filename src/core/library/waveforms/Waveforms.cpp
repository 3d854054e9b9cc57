#include "core/library/waveforms/Waveforms.h"

#include "async/MainQueue.h"
#include "core/library/selection/Selection.h"

#include <algorithm>

namespace {
/// What is handed over of the rows behind the track; the queue takes fewer, and lists are long.
constexpr qsizetype kFollowing = 8;
} // namespace

Waveforms::Waveforms(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

void Waveforms::preloadWaveform(const QUrl& url)
{
    preloadWaveforms({url});
}

void Waveforms::preloadWaveforms(const QList<QUrl>& urls)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_dependencies.preload && !urls.isEmpty())
        m_dependencies.preload(urls);
}

void Waveforms::prioritizeWaveformsForPlayback(const TrackID& trackID)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_dependencies.prioritize)
        return;
    const QList<Track> rows = m_dependencies.selection.visibleTracks();
    const auto current = std::ranges::find(rows, trackID, &Track::id);
    if (current == rows.cend())
        return;
    QList<QUrl> following;
    for (auto row = current + 1; row != rows.cend() && following.size() < kFollowing; ++row)
        following.append(row->url());
    m_dependencies.prioritize(current->url(), following);
}
