#include "async/Completion.h"

#include "async/Cancelled.h"

namespace async {

struct Gate::State {
    bool isOpen = false;
    std::list<std::shared_ptr<WaitPoint>> waiters;
};

Gate::Gate()
    : m_state(std::make_shared<State>())
{
}

Gate::~Gate()
{
    const auto waiters = std::exchange(m_state->waiters, {});
    for (const std::shared_ptr<WaitPoint>& waiter : waiters)
        waiter->abandon();
}

Task<> Gate::wait(std::stop_token stop)
{
    VELMORA_ASSERT_MAIN_THREAD();
    return waitFor(m_state, std::move(stop));
}

Task<> Gate::waitFor(std::shared_ptr<State> state, std::stop_token stop)
{
    if (stop.stop_requested())
        throw Cancelled();
    if (state->isOpen)
        co_return;
    const auto point = std::make_shared<WaitPoint>(stop);
    point->setStopAction([state, point] { state->waiters.remove(point); });
    state->waiters.push_back(point);
    co_await point->wait();
}

void Gate::open()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_state->isOpen = true;
    const auto waiters = std::exchange(m_state->waiters, {});
    for (const std::shared_ptr<WaitPoint>& waiter : waiters)
        waiter->settle();
}

bool Gate::isOpen() const
{
    return m_state->isOpen;
}

} // namespace async
