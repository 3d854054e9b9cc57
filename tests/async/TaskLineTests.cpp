#include "async/TaskGroup.h"
#include "async/TaskQueue.h"

#include "Recorded.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

using namespace async;
using namespace std::chrono_literals;

namespace {

Task<> logged(ManualClock* clock, Log* log, std::string name, std::stop_token stop)
{
    log->push_back(name);
    co_await recorded(log, name, clock->sleep(1s, stop));
}

Task<> endAtOnce(int* count)
{
    ++*count;
    co_return;
}

class TaskLines : public testing::Test {
protected:
    TaskFactory job(std::string name)
    {
        return [this, name](std::stop_token stop) { return logged(&m_clock, &m_log, name, stop); };
    }

    ManualClock m_clock;
    Log m_log;
};

using TaskQueueTest = TaskLines;
using TaskGroupTest = TaskLines;

} // namespace

TEST_F(TaskQueueTest, RunsOneAfterAnotherAndPrependedOnesFirst)
{
    TaskQueue queue;
    queue.append(job("a"));
    queue.append(job("b"));
    queue.prepend(job("c"));
    queue.prepend(job("d"));
    EXPECT_EQ(m_log, Log{"a"});
    EXPECT_EQ(queue.count(), 4);
    m_clock.advance(1s);
    EXPECT_EQ(m_log, (Log{"a", "a:done", "d"}));
    m_clock.advance(10s);
    EXPECT_EQ(m_log, (Log{"a", "a:done", "d", "d:done", "c", "c:done", "b", "b:done"}));
    EXPECT_EQ(queue.count(), 0);
}

TEST_F(TaskQueueTest, CancelsOneWhetherItRunsOrWaits)
{
    TaskQueue queue;
    const TaskQueue::Handle running = queue.append(job("running"));
    const TaskQueue::Handle waiting = queue.append(job("waiting"));
    queue.append(job("last"));
    queue.cancel(waiting);
    queue.cancel(waiting);
    queue.cancel(running);
    EXPECT_EQ(queue.count(), 1);
    EXPECT_EQ(m_log, Log{"running"}) << "the next one waits until the stopped one has ended";
    m_clock.advance(10s);
    EXPECT_EQ(m_log, (Log{"running", "running:cancelled", "last", "last:done"}));
    queue.cancel(running);
    queue.cancel(999);
}

TEST_F(TaskQueueTest, CancelsAllAndGoesOnWithNewOnes)
{
    TaskQueue queue;
    queue.append(job("a"));
    queue.append(job("b"));
    queue.cancelAll();
    EXPECT_EQ(queue.count(), 0);
    queue.append(job("c"));
    m_clock.advance(10s);
    EXPECT_EQ(m_log, (Log{"a", "a:cancelled", "c", "c:done"}));
}

TEST_F(TaskQueueTest, MayBeDestroyedByItsOwnTaskAndDropsTheRest)
{
    auto queue = std::make_unique<TaskQueue>();
    queue->append(job("a"));
    queue->append([&](std::stop_token stop) {
        queue.reset();
        return logged(&m_clock, &m_log, "b", stop);
    });
    queue->append(job("c"));
    m_clock.advance(10s);
    EXPECT_EQ(m_log, (Log{"a", "a:done", "b", "b:cancelled"}));
}

TEST_F(TaskQueueTest, TakesAsManyImmediateTasksAsThereAre)
{
    constexpr int kMany = 100'000;
    int count = 0;
    TaskQueue queue;
    queue.append(job("first"));
    for (int index = 0; index < kMany; ++index)
        queue.append([&](std::stop_token) { return endAtOnce(&count); });
    m_clock.advance(1s);
    EXPECT_EQ(count, kMany);
}

TEST_F(TaskGroupTest, KeepsToItsLimitAndToTheOrder)
{
    TaskGroup group(2);
    for (const char* name : {"a", "b", "c", "d", "e"})
        group.add(job(name));
    EXPECT_EQ(m_log, (Log{"a", "b"}));
    EXPECT_EQ(group.count(), 5);
    m_clock.advance(1s);
    EXPECT_EQ(m_log, (Log{"a", "b", "a:done", "c", "b:done", "d"}));
    EXPECT_EQ(m_clock.pendingCount(), 2);
    m_clock.advance(10s);
    EXPECT_EQ(group.count(), 0);
}

TEST_F(TaskGroupTest, CancelAllStopsTheRunningAndDropsTheWaiting)
{
    for (const bool isDestroyed : {false, true}) {
        m_log.clear();
        auto group = std::make_unique<TaskGroup>(2);
        for (const char* name : {"a", "b", "c"})
            group->add(job(name));
        if (isDestroyed)
            group.reset();
        else
            group->cancelAll();
        EXPECT_EQ(m_clock.pendingCount(), 0);
        m_clock.advance(10s);
        EXPECT_EQ(m_log, (Log{"a", "b", "a:cancelled", "b:cancelled"}));
    }
}
