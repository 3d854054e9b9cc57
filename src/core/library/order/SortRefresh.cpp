#include "core/library/order/SortRefresh.h"

#include "work/Scheduler.h"

SortRefresh::SortRefresh(async::Clock& clock, const Scheduler& scheduler)
    : m_clock(clock)
    , m_scheduler(scheduler)
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
    if (m_pendingBPM && !m_isSearchingTempo) {
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
    return m_pendingMetadata && !m_isScrolling && !m_scheduler.circumstances().isReadingTags;
}

void SortRefresh::schedule()
{
    if (isDue())
        m_refreshTask.start([this](std::stop_token stop) { return refreshLater(stop); });
}

async::Task<> SortRefresh::refreshLater(std::stop_token stop)
{
    co_await m_clock.sleep(async::seconds(kDelay), stop);
    if (!isDue())
        co_return;
    m_pendingMetadata = false;
    emit due();
}

bool SortRefresh::settleBPM()
{
    if (!m_pendingBPM || m_isScrolling || m_isSearchingTempo)
        return false;
    m_pendingBPM = false;
    emit due();
    return true;
}
