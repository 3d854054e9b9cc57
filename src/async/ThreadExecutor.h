#pragma once

#include "async/Executor.h"
#include "async/WorkerPool.h"

#include <array>

namespace async {

/// The program's executor: one pool of threads per priority, with nice values 0, 2, 5 and 10. Pools have as many
/// threads as the machine has processors and at least two; that of the player has four, so that files on disks that do
/// not answer leave one for the file that does. The destructor waits for running jobs (which therefore never wait for
/// the main thread) and drops the waiting ones, whose awaiters throw Cancelled. Created and destroyed on the main
/// thread.
class ThreadExecutor final : public Executor {
public:
    ThreadExecutor();
    ~ThreadExecutor() override;

    /// Jobs of one priority begin in the order of submission, side by side. Throws std::system_error where the system
    /// gives no thread to a pool that has none yet.
    void submit(Priority priority, std::function<void()> job) override;

private:
    std::array<WorkerPool, 4> m_pools;
};

} // namespace async
