#include "core/library/waveforms/Waveforms.h"

#include "async/MainQueue.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/selection/Selection.h"
#include "core/library/waveforms/Envelopes.h"
#include "core/library/workspace/Workspace.h"

#include <algorithm>
#include <array>

namespace {

constexpr qsizetype kPreferred = 3; // what plays and the two behind it

} // namespace

Waveforms::Waveforms(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_queue(WorkKinds::kWaveform, *this, dependencies.scheduler, dependencies.executor)
{
    connect(&dependencies.workspace, &Workspace::tracksChanged, this, &Waveforms::listChanged);
    connect(&dependencies.workspace, &Workspace::sectionListChanged, this,
            [this](Track::MetadataDestination, const ListChange& change) { listChanged(change); });
}

bool Waveforms::hasRow(const QUrl& url) const
{
    using List = Track::MetadataDestination;
    return std::ranges::any_of(
        std::array{List::Library, List::Analysis, List::MusicalKey, List::Duplicates},
        [&](List list) { return m_dependencies.workspace.list(list).indexOfURL(url).has_value(); });
}

/// What waits is looked at when its turn comes: many may wait, and many rows may leave.
void Waveforms::listChanged(const ListChange& change)
{
    if (!change.mayLackRows())
        return;
    QSet<QUrl> gone;
    for (const QUrl& url : m_queue.running()) {
        if (!hasRow(url))
            gone.insert(url);
    }
    m_queue.withdraw(gone);
}

void Waveforms::preloadWaveforms(const QList<QUrl>& urls)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_queue.append(urls);
}

void Waveforms::playerTold(bool isPlaying, const QUrl& currentURL, const std::optional<TrackID>& currentTrackID)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!isPlaying) {
        m_playedID.reset();
        m_queue.prefer({});
        return;
    }
    m_queue.interruptOthersThan(currentURL);
    if (std::exchange(m_playedID, currentTrackID) != currentTrackID && currentTrackID)
        prioritizeWaveformsForPlayback(*currentTrackID);
}

void Waveforms::prioritizeWaveformsForPlayback(const TrackID& trackID)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QList<Track> rows = m_dependencies.selection.visibleTracks();
    QList<QUrl> urls;
    for (auto row = std::ranges::find(rows, trackID, &Track::id); row != rows.cend() && urls.size() < kPreferred; ++row)
        urls.append(row->url());
    if (urls.isEmpty())
        return;
    m_queue.prefer(urls);
    m_queue.append(urls);
}

/// While something plays, all but what is preferred waits: each file may start a decoder.
WorkJob<bool> Waveforms::begin(const QUrl& url, const Allowance&)
{
    if (!hasRow(url))
        return WorkJob<bool>::unwanted();
    if (m_dependencies.scheduler.circumstances().isPlaying && !m_queue.isPreferred(url))
        return WorkJob<bool>::later();
    return WorkJob<bool>::onMain([&envelopes = m_dependencies.envelopes, url](std::stop_token stop) {
        return envelopes.prepare(url, std::move(stop));
    });
}

/// A file without an envelope is left to whoever shows it.
WorkEnd Waveforms::finished(const QUrl& url, std::optional<bool> isThere)
{
    if (isThere.value_or(false))
        emit prepared(url);
    return WorkEnd::Done;
}
