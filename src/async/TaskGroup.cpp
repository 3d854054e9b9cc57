#include "async/TaskGroup.h"

#include "async/TaskLine.h"

namespace async {

struct TaskGroup::State : TaskLine {
    using TaskLine::TaskLine;
};

TaskGroup::TaskGroup(int limit)
    : m_state(std::make_shared<State>(limit))
{
}

TaskGroup::~TaskGroup()
{
    m_state->cancelAll();
}

void TaskGroup::add(TaskFactory factory)
{
    const std::shared_ptr<State> state = m_state;
    state->add(std::move(factory), TaskLine::Place::End);
}

void TaskGroup::cancelAll()
{
    m_state->cancelAll();
}

int TaskGroup::count() const
{
    return m_state->count();
}

} // namespace async
