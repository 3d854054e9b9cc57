#pragma once

#include "async/Executor.h"

#include <deque>
#include <vector>

/// An executor that holds its jobs until it is told to run them, on the calling thread and in order of submission
/// whatever their priority. Thread: main.
class ManualExecutor final : public async::Executor {
public:
    void submit(async::Priority priority, std::function<void()> job) override;

    /// Runs the first job, then drains the main queue. \return whether there was one.
    bool runOne();
    /// Runs all jobs, also those that come up on the way, and drains the main queue before, between and after them.
    void runAll();
    /// Ends the first job as if it had thrown \p error, without running it, then drains the main queue. The job must
    /// come from Executor::run() or a Lane. \return whether there was one.
    bool failOne(std::exception_ptr error);
    /// Drops every held job unrun, as an executor does that goes away, then drains the main queue.
    void dropAll();

    /// Priorities of the held jobs in their order; jobs whose waiter was stopped are still among them.
    std::vector<async::Priority> jobs() const;
    int pendingCount() const { return int(m_jobs.size()); }

private:
    struct Job {
        async::Priority priority;
        std::function<void()> function;
    };

    Job takeFirst();

    std::deque<Job> m_jobs;
};
