#include "analysis/tempo/CooperativeDSPBudget.h"

namespace BPMAnalyzer {

namespace {

// Chosen: a quarter of the processor stays free, in pieces that are shorter than a frame of the window.
constexpr async::Duration kMaximumActiveBurst = async::seconds(0.003);
constexpr async::Duration kRestInterval = async::seconds(0.001);

} // namespace

CooperativeDSPBudget::CooperativeDSPBudget(bool enabled, const WorkerClock& clock)
    : m_enabled(enabled)
    , m_clock(clock)
    , m_activeWindowStartedAt(m_clock.now())
{
}

void CooperativeDSPBudget::checkpoint(int index, int interval)
{
    if (!m_enabled || interval < 1 || index % interval != 0)
        return;
    if (m_clock.now() - m_activeWindowStartedAt < kMaximumActiveBurst)
        return;
    m_clock.sleep(kRestInterval);
    m_activeWindowStartedAt = m_clock.now();
}

} // namespace BPMAnalyzer
