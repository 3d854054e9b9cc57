#pragma once

#include "async/Cancelled.h"
#include "async/Executor.h"

/// Runs a job that changes a file and waits for its end whatever the stop says, so that what guards the file is held
/// until then; after a stop request it throws Cancelled like every awaiter. \param job must not throw.
template <typename Job>
async::Task<std::invoke_result_t<Job, std::stop_token>> finishedJob(async::Executor& executor, std::stop_token stop,
                                                                    Job job)
{
    auto result = co_await executor.run(async::Priority::UserInitiated, std::stop_token(), std::move(job));
    if (stop.stop_requested())
        throw async::Cancelled();
    co_return std::move(result);
}
