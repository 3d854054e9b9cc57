#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"

#include <functional>

/// When an order change that is owed to the playlist is carried out: not while it scrolls, not while tags stream in,
/// and a second after both have come to rest. Thread: main.
class SortRefresh {
public:
    /// Seconds without news after which the list is put in order again. Chosen: long enough for a reader's pauses.
    static constexpr double kDelay = 1;

    struct Dependencies {
        async::Clock& clock;
        /// Whether tags are being read, or read tags wait to be applied.
        std::function<bool()> isLoadingMetadata;
        /// Whether tracks wait for their tempo; may be empty.
        std::function<bool()> isQueueingBPM;
        /// Puts the list in order now.
        std::function<void()> reorder;
    };

    explicit SortRefresh(Dependencies dependencies);

    bool isScrolling() const { return m_isScrolling; }
    void setScrolling(bool scrolling);

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

private:
    bool isDue() const;
    bool isQueueingBPM() const { return m_dependencies.isQueueingBPM && m_dependencies.isQueueingBPM(); }
    async::Task<> refreshLater(std::stop_token stop);

    Dependencies m_dependencies;
    bool m_isScrolling = false;
    bool m_pendingBPM = false;
    bool m_pendingPopularity = false;
    bool m_pendingMetadata = false;
    async::TaskSlot m_refreshTask;
};
