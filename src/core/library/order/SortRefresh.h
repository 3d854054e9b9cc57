#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"

#include <QObject>

class Scheduler;

/// When the playlist is put in order after changes that had to wait: not while it scrolls, not while tags stream in,
/// and a second after both have come to rest. What waits is noted here by its reason: values of rows, tempos,
/// ratings. Thread: main.
class SortRefresh : public QObject {
    Q_OBJECT

public:
    /// Seconds without news after which the list is put in order again. Chosen: long enough for a reader's pauses.
    static constexpr double kDelay = 1;

    /// \param scheduler tells whether tags are being read. Both outlive it.
    SortRefresh(async::Clock& clock, const Scheduler& scheduler);

    /// As setScrolling() was last told.
    bool isScrolling() const { return m_isScrolling; }
    /// The list moves, which stops the pause, or has come to rest: from then on one refresh serves for all reasons.
    void setScrolling(bool scrolling);

    /// Whether tempos are being searched for.
    void setSearchingTempo(bool isSearching) { m_isSearchingTempo = isSearching; }

    /// Values of rows changed while the order was frozen.
    void oweMetadata();
    /// A tempo that the list or Favorites are sorted by changed.
    void oweBPM() { m_pendingBPM = true; }
    /// Ratings changed while the list scrolled.
    void owePopularity() { m_pendingPopularity = true; }

    /// Starts the pause anew if values of rows wait and nothing holds the order back.
    void schedule();
    /// Puts the list in order for what oweBPM() noted, unless the list scrolls or tempos are still being found.
    /// \return whether it did.
    bool settleBPM();

    /// What waits, by its reason.
    bool isMetadataOwed() const { return m_pendingMetadata; }
    bool isBPMOwed() const { return m_pendingBPM; }
    bool isPopularityOwed() const { return m_pendingPopularity; }

Q_SIGNALS:
    /// The list is to be put in order now, for all that waited.
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
