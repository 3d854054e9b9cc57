#include "support/ManualClock.h"

#include "async/MainQueue.h"

void ManualClock::advance(async::Duration duration)
{
    const async::Duration end = m_now + duration;
    async::MainQueue::drain();
    while (!m_deadlines.empty() && m_deadlines.begin()->first.first <= end) {
        const auto node = m_deadlines.extract(m_deadlines.begin());
        m_now = node.key().first;
        node.mapped()();
        async::MainQueue::drain();
    }
    m_now = end;
}

std::optional<async::Duration> ManualClock::nextDeadline() const
{
    if (m_deadlines.empty())
        return std::nullopt;
    return m_deadlines.begin()->first.first - m_now;
}

quint64 ManualClock::schedule(async::Duration deadline, std::function<void()> fire)
{
    m_deadlines.emplace(Key(deadline, ++m_lastHandle), std::move(fire));
    return m_lastHandle;
}

void ManualClock::forget(quint64 handle)
{
    std::erase_if(m_deadlines, [handle](const auto& entry) { return entry.first.second == handle; });
}
