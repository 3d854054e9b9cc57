#pragma once

#include "async/Task.h"

#include <functional>
#include <stop_token>
#include <utility>

/// What a concern wants done for one key of its queue. A value: it is made on the main thread by one of the four
/// functions below and given to the queue, which keeps it until the job has ended.
template <typename Result>
class WorkJob {
public:
    /// Runs on a worker thread: values in, value out. It polls its token; an exception ends it without a result.
    using Function = std::function<Result(std::stop_token)>;
    /// Runs on the main thread and waits there for something else. It calls a coroutine and is none itself.
    using Coroutine = std::function<async::Task<Result>(std::stop_token)>;

    /// The result is not wanted any more: the key leaves the queue.
    static WorkJob unwanted() { return WorkJob(Kind::Unwanted); }
    /// Not now: the queue waits until it or the circumstances change.
    static WorkJob later() { return WorkJob(Kind::Later); }
    /// A job for a worker thread at the priority of the Allowance. \param function not empty; it captures copies, for
    /// what it refers to may go while it runs.
    static WorkJob onWorker(Function function)
    {
        WorkJob job(Kind::OnWorker);
        job.m_function = std::move(function);
        return job;
    }
    /// A job that waits on the main thread for something that works elsewhere. \param coroutine not empty; it throws
    /// Cancelled or ends soon once its token is stopped: the next key of the queue waits for that.
    static WorkJob onMain(Coroutine coroutine)
    {
        WorkJob job(Kind::OnMain);
        job.m_coroutine = std::move(coroutine);
        return job;
    }

    /// Whether the key is to leave the queue instead.
    bool isUnwanted() const { return m_kind == Kind::Unwanted; }
    /// Whether nothing is to begin now; the key stays where it is.
    bool isLater() const { return m_kind == Kind::Later; }
    /// Empty but for onWorker().
    const Function& function() const { return m_function; }
    /// Empty but for onMain().
    const Coroutine& coroutine() const { return m_coroutine; }

private:
    enum class Kind { Unwanted, Later, OnWorker, OnMain };

    explicit WorkJob(Kind kind)
        : m_kind(kind)
    {
    }

    Kind m_kind;
    Function m_function;
    Coroutine m_coroutine;
};
