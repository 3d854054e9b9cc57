#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"

#include <QObject>

class Scheduler;

/// When an order change that is owed to the playlist is carried out: not while it scrolls, not while tags stream in,
/// and a second after both have come to rest. Thread: main.
class SortRefresh : public QObject {
    Q_OBJECT

public:
    /// Seconds without news after which the list is put in order again. Chosen: long enough for a reader's pauses.
    static constexpr double kDelay = 1;

    SortRefresh(async::Clock& clock, const Scheduler& scheduler);

    bool isScrolling() const { return m_isScrolling; }
    void setScrolling(bool scrolling);

    /// Whether tempos are being searched for.
    void setSearchingTempo(bool isSearching) { m_isSearchingTempo = isSearching; }

    /// Values of rows changed while the order was frozen.
    void oweMetadata();
    /// A tempo that the list or Favorites are sorted by changed.
    void oweBPM() { m_pendingBPM = true; }
    /// Ratings changed while the list scrolled.
    void owePopularity() { m_pendingPopularity = true; }

    /// Starts the pause anew if an order change is owed and nothing holds it back.
    void schedule();
    /// Pays what oweBPM() left, unless the list scrolls or tempos are still being found. \return whether it did.
    bool settleBPM();

    bool isMetadataOwed() const { return m_pendingMetadata; }
    bool isBPMOwed() const { return m_pendingBPM; }
    bool isPopularityOwed() const { return m_pendingPopularity; }

Q_SIGNALS:
    /// The list is put in order now.
    void due();

private:
    bool isDue() const;
    async::Task<> refreshLater(std::stop_token stop);

    async::Clock& m_clock;
    const Scheduler& m_scheduler;
    bool m_isScrolling = false;
    bool m_isSearchingTempo = false;
    bool m_pendingBPM = false;
    bool m_pendingPopularity = false;
    bool m_pendingMetadata = false;
    async::TaskSlot m_refreshTask;
};
