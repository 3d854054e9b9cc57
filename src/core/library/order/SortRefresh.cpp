#include "core/library/order/SortRefresh.h"

SortRefresh::SortRefresh(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
{
}

void SortRefresh::setScrolling(bool scrolling)
{
    m_isScrolling = scrolling;
    if (scrolling) {
        m_refreshTask.cancel();
        return;
    }
    // One refresh pays for all that is owed.
    if (m_pendingBPM && !isQueueingBPM()) {
        m_pendingBPM = false;
        m_pendingPopularity = false;
        m_pendingMetadata = true;
    } else if (m_pendingPopularity) {
        m_pendingPopularity = false;
        m_pendingMetadata = true;
    }
}

void SortRefresh::oweMetadata()
{
    m_pendingMetadata = true;
    schedule();
}

bool SortRefresh::isDue() const
{
    return m_pendingMetadata && !m_isScrolling &&
           !(m_dependencies.isLoadingMetadata && m_dependencies.isLoadingMetadata());
}

void SortRefresh::schedule()
{
    if (isDue())
        m_refreshTask.start([this](std::stop_token stop) { return refreshLater(stop); });
}

async::Task<> SortRefresh::refreshLater(std::stop_token stop)
{
    co_await m_dependencies.clock.sleep(async::seconds(kDelay), stop);
    if (!isDue())
        co_return;
    m_pendingMetadata = false;
    m_dependencies.reorder();
}

bool SortRefresh::settleBPM()
{
    if (!m_pendingBPM || m_isScrolling || isQueueingBPM())
        return false;
    m_pendingBPM = false;
    m_dependencies.reorder();
    return true;
}
