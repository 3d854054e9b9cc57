#include "async/ThreadExecutor.h"

#include <thread>

namespace async {

namespace {

// Chosen: each step of 5 leaves a busy thread about a third of the processor time of the step above it. All work but
// the opening of what shall sound stands below the main thread and the player.
constexpr int kPlayerNiceness = 0;
constexpr int kUserInitiatedNiceness = 2;
constexpr int kUtilityNiceness = 5;
constexpr int kBackgroundNiceness = 10;
constexpr int kPlayerThreads = 4;

int threadsPerPool()
{
    return int(std::max(2u, std::thread::hardware_concurrency()));
}

} // namespace

ThreadExecutor::ThreadExecutor()
    : m_pools{{{kPlayerNiceness, kPlayerThreads},
               {kUserInitiatedNiceness, threadsPerPool()},
               {kUtilityNiceness, threadsPerPool()},
               {kBackgroundNiceness, threadsPerPool()}}}
{
}

ThreadExecutor::~ThreadExecutor()
{
    // All pools first: a running job may still hand the next one of its lane to another pool.
    for (WorkerPool& pool : m_pools)
        pool.close();
}

void ThreadExecutor::submit(Priority priority, std::function<void()> job)
{
    m_pools.at(size_t(priority)).submit(std::move(job));
}

} // namespace async
