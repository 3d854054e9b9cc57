#pragma once

#include <exception>
#include <memory>

namespace async {

/// A unit of work as executors hold it. Destroyed without run() or fail(), it cancels what waits for it.
class Call {
public:
    virtual ~Call() = default;
    /// Does the work and reports its end. Called once. Thread: a worker.
    virtual void run() noexcept = 0;
    /// Ends the call as if the work had thrown \p error, without doing it. For executors in tests.
    virtual void fail(std::exception_ptr error) noexcept = 0;
};

/// What Executor::submit() receives from Executor::run() and from lanes: a copyable function around a call.
struct QueuedCall {
    std::shared_ptr<Call> call;
    void operator()() const { call->run(); }
};

} // namespace async
