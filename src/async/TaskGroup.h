#pragma once

#include "async/TaskSlot.h"

namespace async {

/// Up to a fixed number of tasks at a time, the others waiting in order. The destructor stops all. Thread: main.
class TaskGroup {
public:
    /// \param limit tasks that run at once, at least 1.
    explicit TaskGroup(int limit);
    ~TaskGroup();
    TaskGroup(const TaskGroup&) = delete;
    TaskGroup& operator=(const TaskGroup&) = delete;

    /// Starts the task at once if there is room, else when one of those before it has ended. A task that was stopped
    /// keeps its room until it has ended.
    void add(TaskFactory factory);
    /// Requests a stop of the running tasks and drops the waiting ones, whose factories are never called. Does not
    /// wait.
    void cancelAll();
    /// Waiting and running; those that were stopped and have not ended yet are left out.
    int count() const;

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace async
