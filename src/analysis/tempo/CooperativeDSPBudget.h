#pragma once

#include "platform/process/WorkerClock.h"

namespace BPMAnalyzer {

/// Rests for 1 ms after each 3 ms of work, so that playback and the window stay smooth beside an analysis. One per
/// estimation. Thread: that of the estimation, which its rests block.
class CooperativeDSPBudget {
public:
    /// \param enabled   whether it rests at all.
    CooperativeDSPBudget(bool enabled, const WorkerClock& clock);

    /// To be called between items of work; looks at the clock when \p index is a multiple of \p interval. An interval
    /// below 1 never does.
    void checkpoint(int index, int interval);

private:
    const bool m_enabled;
    const WorkerClock m_clock;
    async::Duration m_activeWindowStartedAt;
};

} // namespace BPMAnalyzer
