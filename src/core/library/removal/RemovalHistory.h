#pragma once

#include "core/library/removal/RemovedTrack.h"

#include <QSet>

/// The removals that can be taken back, those under way among them. A value without signals. Thread: main.
class RemovalHistory {
public:
    /// What finished removals left, ascending by moment: the last one is on top.
    const QList<RemovalStep>& steps() const { return m_steps; }
    /// Null if no finished removal has the moment.
    const RemovalStep* find(quint64 moment) const;
    void push(RemovalStep step);
    std::optional<RemovalStep> take(quint64 moment);
    /// Takes rows out of a step; a step that is left without any goes.
    void forget(quint64 moment, const QSet<TrackID>& ids);

    /// A move to the Trash begins: its step follows with push(), or never.
    void beginTrashing(quint64 moment) { m_trashing.append(moment); }
    void endTrashing(quint64 moment) { m_trashing.removeOne(moment); }
    /// A step is to be taken back in the background: it stays here, and is not offered again until the end.
    void beginTakingBack(quint64 moment) { m_takingBack.insert(moment); }
    void endTakingBack(quint64 moment) { m_takingBack.remove(moment); }
    bool isTakingBack() const { return !m_takingBack.isEmpty(); }

    /// The moment of what is taken back next; 0 if there is nothing.
    quint64 undoMoment() const;

private:
    QList<RemovalStep> m_steps;
    QList<quint64> m_trashing; ///< moments of moves that have not ended
    QSet<quint64> m_takingBack;
};
