#include "async/TaskQueue.h"

#include "async/TaskLine.h"

namespace async {

struct TaskQueue::State : TaskLine {
    State()
        : TaskLine(1)
    {
    }
};

TaskQueue::TaskQueue()
    : m_state(std::make_shared<State>())
{
}

TaskQueue::~TaskQueue()
{
    m_state->cancelAll();
}

TaskQueue::Handle TaskQueue::append(TaskFactory factory)
{
    const std::shared_ptr<State> state = m_state;
    return state->add(std::move(factory), TaskLine::Place::End);
}

TaskQueue::Handle TaskQueue::prepend(TaskFactory factory)
{
    const std::shared_ptr<State> state = m_state;
    return state->add(std::move(factory), TaskLine::Place::Front);
}

void TaskQueue::cancel(Handle handle)
{
    const std::shared_ptr<State> state = m_state;
    state->cancel(handle);
}

void TaskQueue::cancelAll()
{
    m_state->cancelAll();
}

int TaskQueue::count() const
{
    return m_state->count();
}

} // namespace async
