#pragma once

#include "async/TaskRun.h"

#include <deque>
#include <vector>

namespace async {

/// The common part of TaskQueue and TaskGroup: a line of tasks of which the first few run. Held by a shared pointer,
/// because a task may destroy its queue or group while it runs. Thread: main.
class TaskLine : public std::enable_shared_from_this<TaskLine> {
public:
    /// Names one task of one line; never given twice, never 0.
    using Handle = quint64;
    /// Before or behind all that wait; what runs goes on in either case.
    enum class Place { Front, End };

    /// \param limit tasks that run at once, at least 1.
    explicit TaskLine(int limit);

    /// Adds a task and starts it if there is room, at once or, when called by a task that is being started, right
    /// after that.
    Handle add(TaskFactory factory, Place place);
    /// Stops or drops one; unknown handles are ignored. A stopped task keeps its room until it has ended.
    void cancel(Handle handle);
    /// The same for every task. What is added meanwhile, by a task that ends, stays.
    void cancelAll();
    /// Waiting and running, without the stopped ones.
    int count() const;

private:
    struct Entry {
        Handle handle = 0;
        TaskFactory factory;
    };
    struct Running {
        Handle handle = 0;
        std::shared_ptr<TaskRun> run;
    };

    void startWaiting();
    void startFirst();
    void remove(Handle handle);

    const size_t m_limit;
    std::deque<Entry> m_waiting;
    std::vector<Running> m_running;
    Handle m_lastHandle = 0;
    bool m_isStarting = false;
};

} // namespace async
