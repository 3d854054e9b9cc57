#pragma once

#include "core/model/Track.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <optional>

/// The one track that is taken before all others.
struct BPMAnalysisQueuePriority {
    std::optional<TrackID> trackID;

    /// Takes that track out of the list if it is there, and is without one from then on; else the first. Nothing from
    /// an empty list.
    std::optional<TrackID> dequeue(QList<TrackID>& from);
};

/// The tracks that wait for their tempo or are being analysed, in order, with their failed attempts and the size of the
/// batch. A value. Thread: main.
class BPMQueue {
public:
    /// Nothing is queued or being analysed.
    bool isEmpty() const { return m_queued.isEmpty(); }
    /// Queued or being analysed.
    bool contains(const TrackID& id) const { return m_queued.contains(id); }
    qsizetype size() const { return m_queued.size(); }
    const QSet<TrackID>& queued() const { return m_queued; }
    /// In order; without those being analysed.
    const QList<TrackID>& waiting() const { return m_waiting; }
    /// Tracks that came since nothing was queued.
    qsizetype batchTotal() const { return m_batchTotal; }
    const std::optional<TrackID>& priority() const { return m_priority.trackID; }
    void setPriority(const std::optional<TrackID>& id) { m_priority.trackID = id; }

    /// Adds tracks that are not queued at the end.
    void append(const QList<TrackID>& fresh);
    /// Adds a track at the end of a running batch, its failures forgotten. \return whether it was new.
    bool join(const TrackID& id);
    /// The next track; it stays queued until drop().
    std::optional<TrackID> takeNext() { return m_priority.dequeue(m_waiting); }
    /// Puts a track back that was taken; others are ignored.
    void requeueAtFront(const TrackID& id);
    /// Puts a track back to the end after its first failure. \return whether it was the first.
    bool retryLater(const TrackID& id);
    /// Ends a track that was taken, whatever came of it.
    void drop(const TrackID& id);
    /// Ends tracks wherever they stand.
    void withdraw(const QSet<TrackID>& ids);

private:
    QList<TrackID> m_waiting;
    QSet<TrackID> m_queued;
    QHash<TrackID, int> m_attempts; ///< failed ones
    BPMAnalysisQueuePriority m_priority;
    qsizetype m_batchTotal = 0;
};
