#include "core/library/tempo/BPMQueue.h"

#include <algorithm>

std::optional<TrackID> BPMAnalysisQueuePriority::dequeue(QList<TrackID>& from)
{
    if (from.isEmpty())
        return std::nullopt;
    if (trackID && from.removeOne(*trackID))
        return std::exchange(trackID, std::nullopt);
    return from.takeFirst();
}

void BPMQueue::append(const QList<TrackID>& fresh)
{
    m_batchTotal = isEmpty() ? fresh.size() : m_batchTotal + fresh.size();
    m_waiting.append(fresh);
    for (const TrackID& id : fresh)
        m_queued.insert(id);
}

bool BPMQueue::join(const TrackID& id)
{
    if (m_queued.contains(id))
        return false;
    m_queued.insert(id);
    m_waiting.append(id);
    ++m_batchTotal;
    m_attempts.remove(id);
    return true;
}

void BPMQueue::requeueAtFront(const TrackID& id)
{
    if (m_queued.contains(id) && !m_waiting.contains(id))
        m_waiting.prepend(id);
}

bool BPMQueue::retryLater(const TrackID& id)
{
    int& attempts = m_attempts[id];
    if (attempts > 0)
        return false;
    attempts = 1;
    m_waiting.append(id);
    return true;
}

void BPMQueue::drop(const TrackID& id)
{
    m_queued.remove(id);
    m_attempts.remove(id);
}

void BPMQueue::withdraw(const QSet<TrackID>& ids)
{
    for (const TrackID& id : ids)
        drop(id);
    m_waiting.removeIf([&](const TrackID& id) { return ids.contains(id); });
}
