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

    void add(TaskFactory factory);
    /// Stops the running tasks and drops the waiting ones.
    void cancelAll();
    /// Waiting and running; those that were stopped and have not ended yet are left out.
    int count() const;

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace async
