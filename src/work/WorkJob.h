#pragma once

#include "async/Task.h"

#include <functional>
#include <stop_token>
#include <utility>

/// What a concern wants done for one key of its queue.
template <typename Result>
class WorkJob {
public:
    /// Runs on a worker thread: values in, value out. It polls its token; an exception ends it without a result.
    using Function = std::function<Result(std::stop_token)>;
    /// Runs on the main thread and waits there for something else. It calls a coroutine and is none itself.
    using Coroutine = std::function<async::Task<Result>(std::stop_token)>;

    /// Nobody wants the result any more: the key leaves the queue.
    static WorkJob unwanted() { return WorkJob(Kind::Unwanted); }
    /// Not now: the queue waits until it or the circumstances change.
    static WorkJob later() { return WorkJob(Kind::Later); }
    static WorkJob onWorker(Function function)
    {
        WorkJob job(Kind::OnWorker);
        job.m_function = std::move(function);
        return job;
    }
    static WorkJob onMain(Coroutine coroutine)
    {
        WorkJob job(Kind::OnMain);
        job.m_coroutine = std::move(coroutine);
        return job;
    }

    bool isUnwanted() const { return m_kind == Kind::Unwanted; }
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
