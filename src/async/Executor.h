#pragma once

#include "async/RunningCall.h"
#include "async/Task.h"

#include <functional>
#include <stop_token>
#include <type_traits>

namespace async {

/// How urgent background work is. On Linux a nice value of the thread that runs it. Work of one priority never waits
/// for work of another.
enum class Priority {
    Player,        ///< opening a file that shall sound; nothing else, so that it never waits behind anything
    UserInitiated, ///< what the user has asked for, e.g. saves
    Utility,       ///< what the user will want soon
    Background     ///< what may take its time
};

/// Runs functions off the main thread and resumes their awaiters on the main queue. ThreadExecutor in the program,
/// ManualExecutor in tests. Thread: run() is called on the main thread.
class Executor {
public:
    virtual ~Executor() = default;

    /// Runs \p job (callable with a std::stop_token, values in, value out) at \p priority and gives what it returned,
    /// or throws what it threw. Throws Cancelled once \p stop was requested, whatever the job did; a job that has not
    /// begun by then never begins. Resumption is always posted to the main queue; after a stop it does not wait for a
    /// job that is still running, whose result is then thrown away. Also throws Cancelled when the executor is
    /// destroyed first.
    /// A job with captures is named before the call; see Task for the reason.
    template <typename Job>
    Task<std::invoke_result_t<Job, std::stop_token>> run(Priority priority, std::stop_token stop, Job job);

    /// Queues a plain function on a worker thread; it must not throw. The seam that implementations fill; callers use
    /// run(). Thread: any.
    virtual void submit(Priority priority, std::function<void()> job) = 0;
};

template <typename Job>
Task<std::invoke_result_t<Job, std::stop_token>> Executor::run(Priority priority, std::stop_token stop, Job job)
{
    VELMORA_ASSERT_MAIN_THREAD();
    return detail::runCall(std::move(stop), std::move(job),
                           [this, priority](QueuedCall call) { submit(priority, std::move(call)); });
}

} // namespace async
