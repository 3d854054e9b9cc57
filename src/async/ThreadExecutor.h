#pragma once

#include "async/Executor.h"
#include "async/WorkerPool.h"

#include <array>

namespace async {

/// The program's executor: one pool of threads per priority, of as many threads as the machine has processors and at
/// least two, with nice values 0, 5 and 10. The destructor waits for running jobs (which therefore never wait for the
/// main thread) and drops the waiting ones, whose awaiters throw Cancelled. Created and destroyed on the main thread.
class ThreadExecutor final : public Executor {
public:
    ThreadExecutor();
    ~ThreadExecutor() override;

    void submit(Priority priority, std::function<void()> job) override;

private:
    std::array<WorkerPool, 3> m_pools;
};

} // namespace async
