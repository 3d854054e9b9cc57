#include "async/TaskSlot.h"

#include "async/MainQueue.h"
#include "async/TaskRun.h"

namespace async {

struct TaskSlot::State {
    std::shared_ptr<TaskRun> current;

    void stopCurrent()
    {
        if (const std::shared_ptr<TaskRun> old = std::exchange(current, nullptr))
            old->requestStop();
    }
};

TaskSlot::TaskSlot()
    : m_state(std::make_shared<State>())
{
}

TaskSlot::~TaskSlot()
{
    cancel();
}

void TaskSlot::start(const TaskFactory& factory)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const std::shared_ptr<State> state = m_state;
    const auto run = std::make_shared<TaskRun>(factory);
    state->stopCurrent();
    state->current = run;
    // The task may destroy this slot before it waits for the first time: nothing of the slot is touched afterwards.
    run->start();
}

void TaskSlot::cancel()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const std::shared_ptr<State> state = m_state;
    state->stopCurrent();
}

bool TaskSlot::isActive() const
{
    return m_state->current && m_state->current->isActive();
}

} // namespace async
