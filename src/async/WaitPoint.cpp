#include "async/WaitPoint.h"

#include "async/Cancelled.h"
#include "async/MainQueue.h"

namespace async {

WaitPoint::WaitPoint(std::stop_token stop)
    : m_stop(std::move(stop))
{
}

void WaitPoint::setStopAction(std::function<void()> action)
{
    m_stopAction = std::move(action);
}

void WaitPoint::settle()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (std::exchange(m_isSettled, true))
        return;
    m_stopAction = nullptr;
    if (m_waiter)
        postResumption();
}

void WaitPoint::abandon()
{
    if (!m_isSettled)
        m_isAbandoned = true;
    settle();
}

void WaitPoint::beginWaiting(std::coroutine_handle<> waiter)
{
    m_waiter = waiter;
    if (m_isSettled)
        postResumption();
    else
        m_stopCallback.emplace(m_stop, StopHook{weak_from_this()});
}

void WaitPoint::endWaiting()
{
    m_stopCallback.reset();
    if (m_isAbandoned || m_stop.stop_requested())
        throw Cancelled();
}

void WaitPoint::StopHook::operator()() const noexcept
{
    const std::shared_ptr<WaitPoint> held = point.lock();
    if (!held)
        return;
    if (MainQueue::isMainThread())
        held->stopWaiting();
    else
        MainQueue::post([held] { held->stopWaiting(); });
}

void WaitPoint::stopWaiting()
{
    if (m_isSettled)
        return;
    const std::function<void()> action = std::exchange(m_stopAction, nullptr);
    settle();
    if (action)
        action();
}

void WaitPoint::postResumption()
{
    MainQueue::post([self = shared_from_this()] { self->m_waiter.resume(); });
}

} // namespace async
