#include "core/library/tempo/TempoRequests.h"

#include <algorithm>

namespace {

// Chosen: a slice takes about a millisecond of the main thread, however long the list is.
constexpr qsizetype kSliceIDs = 1000;
constexpr int kSliceRows = 20'000;

QList<TrackID> inListOrder(const QSet<TrackID>& ids, const TrackList& tracks)
{
    std::vector<int> rows;
    for (const TrackID& id : ids) {
        if (const std::optional<int> row = tracks.indexOf(id))
            rows.push_back(*row);
    }
    std::ranges::sort(rows);
    QList<TrackID> sorted;
    for (const int row : rows)
        sorted.append(tracks.at(row).id());
    return sorted;
}

} // namespace

void TempoRequests::add(QSet<TrackID> ids, bool again)
{
    if (!ids.isEmpty())
        m_requests.push_back({std::move(ids), again});
}

TempoRequests::Slice TempoRequests::next(const TrackList& tracks)
{
    if (m_requests.empty())
        return {};
    Request& request = m_requests.front();
    Slice slice{{}, request.again};
    if (request.ids.size() <= kSliceIDs && request.row == 0) {
        slice.ids = inListOrder(request.ids, tracks);
        request.ids.clear();
    } else {
        slice.ids = walk(request, tracks);
    }
    if (request.ids.isEmpty())
        m_requests.pop_front();
    return slice;
}

/// The list may change between two slices: what a walk missed is found by another, until one finds nothing.
QList<TrackID> TempoRequests::walk(Request& request, const TrackList& tracks)
{
    QList<TrackID> found;
    const int end = std::min(request.row + kSliceRows, tracks.size());
    while (request.row < end && found.size() < kSliceIDs && !request.ids.isEmpty()) {
        const TrackID id = tracks.at(request.row++).id();
        if (request.ids.remove(id))
            found.append(id);
    }
    request.hasFound |= !found.isEmpty();
    if (request.row >= tracks.size()) {
        if (!std::exchange(request.hasFound, false))
            request.ids.clear();
        request.row = 0;
    }
    return found;
}
