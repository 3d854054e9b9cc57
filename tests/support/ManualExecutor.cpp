#include "support/ManualExecutor.h"

#include "async/MainQueue.h"

void ManualExecutor::submit(async::Priority priority, std::function<void()> job)
{
    m_jobs.push_back(Job{priority, std::move(job)});
}

bool ManualExecutor::runOne()
{
    async::MainQueue::drain();
    if (m_jobs.empty())
        return false;
    {
        const Job job = takeFirst();
        job.function();
    }
    async::MainQueue::drain();
    return true;
}

void ManualExecutor::runAll()
{
    while (runOne()) {
    }
}

bool ManualExecutor::failOne(std::exception_ptr error)
{
    async::MainQueue::drain();
    if (m_jobs.empty())
        return false;
    {
        const Job job = takeFirst();
        const auto* queued = job.function.target<async::QueuedCall>();
        Q_ASSERT(queued);
        queued->call->fail(std::move(error));
    }
    async::MainQueue::drain();
    return true;
}

void ManualExecutor::dropAll()
{
    m_jobs.clear();
    async::MainQueue::drain();
}

std::vector<async::Priority> ManualExecutor::jobs() const
{
    std::vector<async::Priority> priorities;
    for (const Job& job : m_jobs)
        priorities.push_back(job.priority);
    return priorities;
}

ManualExecutor::Job ManualExecutor::takeFirst()
{
    Job first = std::move(m_jobs.front());
    m_jobs.pop_front();
    return first;
}
