#pragma once

#include "async/TaskSlot.h"

#include <memory>

namespace async {

/// Tasks one after another, in the order in which they were added. The destructor stops the running one and drops the
/// others. Thread: main.
class TaskQueue {
public:
    /// Names one task of this queue; it stays valid, and does nothing, after the task has ended.
    using Handle = quint64;

    TaskQueue();
    ~TaskQueue();
    TaskQueue(const TaskQueue&) = delete;
    TaskQueue& operator=(const TaskQueue&) = delete;

    /// Adds a task at the end; it starts as soon as nothing is before it, at once if the queue is empty.
    Handle append(TaskFactory factory);
    /// Adds a task in front of all that wait.
    Handle prepend(TaskFactory factory);
    /// Stops or drops one; unknown handles are ignored. The next task starts when a stopped one has ended.
    void cancel(Handle handle);
    /// Requests a stop of the running task and drops the others. A task that is added afterwards waits for the
    /// stopped one.
    void cancelAll();
    /// Waiting and running; those that were stopped and have not ended yet are left out.
    int count() const;

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace async
