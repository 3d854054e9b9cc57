#include "async/Permits.h"

#include "async/Cancelled.h"
#include "async/MainQueue.h"
#include "async/WaitPoint.h"

#include <algorithm>
#include <list>

namespace async {

struct Permits::State {
    // A place in the line; `wasGranted` tells a stop that came first from one that overtook a permit.
    struct Waiter {
        std::shared_ptr<WaitPoint> point;
        bool wasGranted = false;
    };

    int limit = 1;
    int active = 0;
    std::list<std::shared_ptr<Waiter>> waiters;

    void release()
    {
        if (waiters.empty()) {
            active = std::max(active - 1, 0);
            return;
        }
        const std::shared_ptr<Waiter> first = waiters.front();
        waiters.pop_front();
        first->wasGranted = true;
        first->point->settle();
    }
};

Permits::Permits(int limit)
    : m_state(std::make_shared<State>())
{
    Q_ASSERT(limit >= 1);
    m_state->limit = limit;
}

Permits::~Permits()
{
    const auto waiters = std::exchange(m_state->waiters, {});
    for (const std::shared_ptr<State::Waiter>& waiter : waiters)
        waiter->point->abandon();
}

Task<> Permits::acquire(std::stop_token stop)
{
    VELMORA_ASSERT_MAIN_THREAD();
    return acquireFrom(m_state, std::move(stop));
}

Task<> Permits::acquireFrom(std::shared_ptr<State> state, std::stop_token stop)
{
    if (stop.stop_requested())
        throw Cancelled();
    if (state->active < state->limit) {
        ++state->active;
        co_return;
    }
    const auto waiter = std::make_shared<State::Waiter>();
    waiter->point = std::make_shared<WaitPoint>(stop);
    waiter->point->setStopAction([state, waiter] { state->waiters.remove(waiter); });
    state->waiters.push_back(waiter);
    try {
        co_await waiter->point->wait();
    } catch (const Cancelled&) {
        if (waiter->wasGranted)
            state->release();
        throw;
    }
}

void Permits::release()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_state->release();
}

int Permits::active() const
{
    return m_state->active;
}

int Permits::waiting() const
{
    return int(m_state->waiters.size());
}

} // namespace async
