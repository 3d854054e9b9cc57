#pragma once

#include "async/Task.h"

#include <functional>
#include <memory>
#include <stop_token>

namespace async {

/// Makes a task that obeys the given token. A plain function or lambda that calls a coroutine, never a capturing
/// coroutine.
using TaskFactory = std::function<Task<>(std::stop_token)>;

/// Number of tasks started through slots, queues and groups that have not ended. 0 at the end of the program and of
/// every test.
int liveTaskCount();

/// One optional task. Declared last among its owner's members: its destructor stops the task, so that a task which
/// resumes afterwards never reaches the owner again. Cancelled ends it silently; any other exception is reported with
/// qCritical and ends the program in debug builds. Thread: main.
class TaskSlot {
public:
    TaskSlot();
    ~TaskSlot();
    TaskSlot(const TaskSlot&) = delete;
    TaskSlot& operator=(const TaskSlot&) = delete;

    /// Requests a stop of the running task, if any, and starts the new one at once, without waiting for the end of
    /// the old.
    void start(const TaskFactory& factory);
    /// Requests a stop; the slot counts as empty from here on.
    void cancel();
    /// Whether a task runs that was not stopped.
    bool isActive() const;

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace async
