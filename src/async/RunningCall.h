#pragma once

#include "async/MainQueue.h"
#include "async/QueuedCall.h"
#include "async/Task.h"
#include "async/WaitPoint.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>
#include <variant>

// What Executor::run() is made of. A call is shared by the worker, which writes the outcome and then posts the end, and
// the coroutine on the main thread, which reads it afterwards; the main queue's lock orders the two.
namespace async::detail {

/// What a call ends with. Written by the worker before it settles the point, read by the waiter after that.
template <typename Result>
struct Outcome {
    using Value = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

    explicit Outcome(std::stop_token stop)
        : point(std::make_shared<WaitPoint>(std::move(stop)))
    {
    }

    const std::shared_ptr<WaitPoint> point;
    /// What the job returned; empty where it threw, was stopped before it began, or has not ended.
    std::optional<Value> value;
    /// What the job threw; null where it returned.
    std::exception_ptr error;
};

/// A job on its way to a worker. Destroyed unrun, it lets its waiter throw Cancelled.
template <typename Job>
class JobCall final : public Call {
public:
    using Result = std::invoke_result_t<Job, std::stop_token>;

    /// \param job called once at most. \param stop handed to the job, and looked at before it begins.
    JobCall(Job job, std::stop_token stop)
        : m_job(std::move(job))
        , m_stop(std::move(stop))
        , m_outcome(std::make_shared<Outcome<Result>>(m_stop))
    {
    }

    ~JobCall() override
    {
        if (!m_hasEnded)
            MainQueue::post([point = m_outcome->point] { point->abandon(); });
    }

    /// Shared with the waiter, who may read it once its point has resumed.
    const std::shared_ptr<Outcome<Result>>& outcome() const { return m_outcome; }

    /// Runs the job unless a stop was requested by now; what it throws goes to the waiter. Thread: a worker.
    void run() noexcept override
    {
        if (!m_stop.stop_requested()) {
            try {
                invoke();
            } catch (...) {
                m_outcome->error = std::current_exception();
            }
        }
        end();
    }

    void fail(std::exception_ptr error) noexcept override
    {
        m_outcome->error = std::move(error);
        end();
    }

private:
    /// Keeps what the job returns; what it throws goes on to run().
    void invoke()
    {
        if constexpr (std::is_void_v<Result>) {
            std::invoke(*m_job, m_stop);
            m_outcome->value.emplace();
        } else {
            m_outcome->value.emplace(std::invoke(*m_job, m_stop));
        }
    }

    void end() noexcept
    {
        // The job's values go before its waiter is told, so that a reference count seen there is the final one.
        m_job.reset();
        m_hasEnded = true;
        MainQueue::post([point = m_outcome->point] { point->settle(); });
    }

    std::optional<Job> m_job;
    const std::stop_token m_stop;
    const std::shared_ptr<Outcome<Result>> m_outcome;
    bool m_hasEnded = false;
};

/// Waits on the main queue, and gives the value or throws what the job threw. Throws Cancelled after a stop request
/// or where the call was dropped unrun.
template <typename Result>
Task<Result> awaitOutcome(std::shared_ptr<Outcome<Result>> outcome)
{
    co_await outcome->point->wait();
    if (outcome->error)
        std::rethrow_exception(std::exchange(outcome->error, nullptr));
    if constexpr (!std::is_void_v<Result>) {
        Result value = std::move(*outcome->value);
        co_return std::move(value);
    }
}

/// Hands a call around \p job to \p submit, unless the stop has come already, and waits for its outcome.
template <typename Job, typename Submit>
Task<std::invoke_result_t<Job, std::stop_token>> runCall(std::stop_token stop, Job job, Submit submit)
{
    auto call = std::make_shared<JobCall<Job>>(std::move(job), stop);
    auto outcome = call->outcome();
    if (!stop.stop_requested())
        submit(QueuedCall{std::move(call)});
    return awaitOutcome(outcome);
}

} // namespace async::detail
