#include "async/TaskRun.h"

#include "async/Cancelled.h"
#include "async/MainQueue.h"

#include <QtGlobal>

namespace async {

namespace {

int liveTasks = 0;

// Called inside a catch block.
void reportFailure()
{
    try {
        throw;
    } catch (const std::exception& error) {
        qCritical("A task ended with an exception: %s", error.what());
    } catch (...) {
        qCritical("A task ended with an unknown exception");
    }
#ifndef NDEBUG
    std::abort();
#endif
}

} // namespace

int liveTaskCount()
{
    return liveTasks;
}

TaskRun::TaskRun(TaskFactory factory)
    : m_factory(std::move(factory))
{
}

void TaskRun::start(std::function<void()> ended)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_ended = std::move(ended);
    ++liveTasks;
    const std::shared_ptr<TaskRun> self = shared_from_this();
    const Task<> driver = drive(self);
}

Task<> TaskRun::drive(std::shared_ptr<TaskRun> run)
{
    try {
        const std::stop_token stop = run->m_stop.get_token();
        Task<> task = run->m_factory(stop);
        co_await task;
    } catch (const Cancelled&) {
        // Wanted: it was stopped.
    } catch (...) {
        reportFailure();
    }
    run->finish();
}

void TaskRun::finish()
{
    m_hasEnded = true;
    --liveTasks;
    // What the factory holds may own the slot of this very task; it goes while the coroutine still keeps this alive.
    m_factory = nullptr;
    if (const std::function<void()> ended = std::exchange(m_ended, nullptr))
        ended();
}

} // namespace async
