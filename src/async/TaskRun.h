#pragma once

#include "async/TaskSlot.h"

namespace async {

/// One started task with its stop source: what slots, queues and groups are made of; nothing else uses it. Kept alive
/// by its own coroutine until the task has ended. Thread: main.
class TaskRun : public std::enable_shared_from_this<TaskRun> {
public:
    /// \param factory kept until the task has ended, so a task may refer to what the factory holds.
    explicit TaskRun(TaskFactory factory);
    TaskRun(const TaskRun&) = delete;
    TaskRun& operator=(const TaskRun&) = delete;

    /// Starts the task, which may end before this returns. \param ended called once when it has ended, however it did.
    void start(std::function<void()> ended = {});
    /// Asks the task to end. It has not ended when this returns: it throws Cancelled from its wait on a later turn.
    void requestStop() { m_stop.request_stop(); }
    /// Neither ended nor stopped.
    bool isActive() const { return !m_hasEnded && !m_stop.stop_requested(); }
    /// Returned, was cancelled or failed.
    bool hasEnded() const { return m_hasEnded; }

private:
    static Task<> drive(std::shared_ptr<TaskRun> run);
    void finish();

    TaskFactory m_factory;
    std::stop_source m_stop;
    std::function<void()> m_ended;
    bool m_hasEnded = false;
};

} // namespace async
