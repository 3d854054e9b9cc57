#pragma once

#include "async/Executor.h"

namespace async {

/// A serial worker: its jobs run one at a time, in the order of run(), on the workers of an executor. A job that was
/// stopped while it ran still holds the lane until it returns. The destructor lets the running job finish and drops the
/// waiting ones, whose awaiters throw Cancelled. The executor outlives the lane. Thread: main.
class Lane {
public:
    /// \param executor shares its workers fairly: the lane hands it one job at a time
    /// \param priority of all jobs of this lane
    Lane(Executor& executor, Priority priority);
    /// Does not wait for the running job.
    ~Lane();
    Lane(const Lane&) = delete;
    Lane& operator=(const Lane&) = delete;

    /// Like Executor::run(), after all jobs that were given to this lane before.
    template <typename Job>
    Task<std::invoke_result_t<Job, std::stop_token>> run(std::stop_token stop, Job job)
    {
        VELMORA_ASSERT_MAIN_THREAD();
        return detail::runCall(std::move(stop), std::move(job), [this](QueuedCall call) { enqueue(std::move(call)); });
    }

private:
    struct State;
    class Turn;

    void enqueue(QueuedCall call);

    std::shared_ptr<State> m_state;
};

} // namespace async
