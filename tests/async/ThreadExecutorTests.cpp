#include "async/ThreadExecutor.h"

#include "Recorded.h"
#include "async/Lane.h"
#include "async/TaskGroup.h"
#include "async/ThreadNiceness.h"

#include <QCoreApplication>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

using namespace async;

namespace {

Priority priorityOf(int index)
{
    return Priority(index % 4);
}

struct Tally {
    long sum = 0;
    int done = 0;
    int failed = 0;
    int cancelled = 0;

    int ended() const { return done + failed + cancelled; }
};

Task<> recordOutcome(Tally* tally, Task<std::vector<long>> task)
{
    try {
        const std::vector<long> values = co_await task;
        tally->sum += values.back();
        ++tally->done;
    } catch (const Cancelled&) {
        ++tally->cancelled;
    } catch (const std::runtime_error&) {
        ++tally->failed;
    }
}

template <typename Job>
Task<> count(Executor* executor, Tally* tally, Priority priority, Job job, std::stop_token stop)
{
    return recordOutcome(tally, executor->run(priority, std::move(stop), job));
}

std::vector<long> values(long size)
{
    return std::vector<long>(size_t(size % 50 + 1), size);
}

} // namespace

TEST(ThreadExecutor, BringsThousandsOfResultsAndExceptionsBack)
{
    constexpr int kJobs = 6'000;
    ThreadExecutor executor;
    Tally tally;
    TaskGroup group(300);
    for (int index = 0; index < kJobs; ++index) {
        const auto job = [index](std::stop_token) {
            if (index % 10 == 0)
                throw std::runtime_error("every tenth");
            return values(index);
        };
        group.add(
            [&, index, job](std::stop_token stop) { return count(&executor, &tally, priorityOf(index), job, stop); });
    }
    spinUntilIdle();
    EXPECT_EQ(tally.failed, kJobs / 10);
    EXPECT_EQ(tally.done, kJobs - kJobs / 10);
    EXPECT_EQ(tally.sum, long(kJobs) * (kJobs - 1) / 2 - 10L * (kJobs / 10) * (kJobs / 10 - 1) / 2);
}

TEST(ThreadExecutor, StopsFromWorkersAndFromTheMainThreadEndEveryWait)
{
    constexpr int kJobs = 2'000;
    ThreadExecutor executor;
    Tally tally;
    std::vector<std::stop_source> stops(kJobs);
    TaskGroup group(kJobs);
    for (int index = 0; index < kJobs; ++index) {
        // Each job stops its neighbour from its own thread, and every third one itself.
        const auto job = [index, neighbour = stops[size_t(index + 1) % kJobs],
                          own = stops[size_t(index)]](std::stop_token) mutable {
            if (index % 2 == 0)
                neighbour.request_stop();
            if (index % 3 == 0)
                own.request_stop();
            return values(index);
        };
        group.add([&, index, job](std::stop_token) {
            return count(&executor, &tally, priorityOf(index), job, stops[size_t(index)].get_token());
        });
    }
    for (int index = 0; index < kJobs; index += 7)
        stops[size_t(index)].request_stop();
    spinUntilIdle();
    EXPECT_EQ(tally.ended(), kJobs);
    EXPECT_GE(tally.cancelled, kJobs / 3) << "whoever stops itself never gets its result";
}

TEST(ThreadExecutor, DestructionFinishesRunningJobsAndCancelsTheOthers)
{
    for (int round = 0; round < 30; ++round) {
        Tally tally;
        std::atomic<int> begun = 0;
        std::atomic<int> finished = 0;
        TaskGroup group(1000);
        {
            ThreadExecutor executor;
            const auto job = [&](std::stop_token) {
                ++begun;
                std::this_thread::yield();
                ++finished;
                return values(3);
            };
            for (int index = 0; index < 300; ++index) {
                group.add([&, index](std::stop_token stop) {
                    return count(&executor, &tally, priorityOf(index), job, stop);
                });
            }
        }
        EXPECT_EQ(begun, finished);
        MainQueue::drain();
        EXPECT_EQ(tally.done, finished);
        EXPECT_EQ(tally.ended(), 300);
    }
}

TEST(ThreadExecutor, APriorityIsTheNicenessOfItsThreads)
{
    const int inherited = threadNiceness();
    ThreadExecutor executor;
    std::atomic<int> niceness[4] = {-1, -1, -1, -1};
    TaskGroup group(4);
    for (int index = 0; index < 4; ++index) {
        group.add([&, index](std::stop_token stop) {
            return executor.run(priorityOf(index), stop,
                                [&, index](std::stop_token) { niceness[index] = threadNiceness(); });
        });
    }
    spinUntilIdle();
#ifdef Q_OS_LINUX
    for (int index = 0; index < 4; ++index)
        EXPECT_EQ(niceness[index], std::max(inherited, std::array{0, 2, 5, 10}[size_t(index)])) << index;
#endif
    EXPECT_EQ(threadNiceness(), inherited) << "the main thread keeps its own";
}

TEST(ThreadExecutor, ThePlayerWaitsForNoOtherWork)
{
    ThreadExecutor executor;
    TaskGroup group(1000);
    std::stop_source saves;
    const auto blocked = [stop = saves.get_token()](std::stop_token) {
        while (!stop.stop_requested())
            std::this_thread::yield();
    };
    for (int index = 0; index < 903; ++index) {
        // The last ones are files on a disk that does not answer; they hold threads of the player's own.
        const Priority priority = index < 900 ? Priority(1 + index % 3) : Priority::Player;
        group.add([&, priority](std::stop_token stop) { return executor.run(priority, std::move(stop), blocked); });
    }
    std::atomic<bool> isOpen = false;
    group.add([&](std::stop_token stop) -> Task<> {
        return executor.run(Priority::Player, std::move(stop), [&isOpen](std::stop_token) { isOpen = true; });
    });
    EXPECT_TRUE(comesTrue([&] {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return isOpen.load();
    }));
    saves.request_stop();
    spinUntilIdle();
}

TEST(Lane, RunsOneAtATimeInOrderOnRealThreads)
{
    constexpr int kJobs = 2'000;
    ThreadExecutor executor;
    Lane lane(executor, Priority::UserInitiated);
    // Neither atomic nor locked: the lane itself orders the accesses.
    std::vector<int> order;
    TaskGroup group(kJobs);
    for (int index = 0; index < kJobs; ++index) {
        group.add([&, index](std::stop_token stop) {
            return lane.run(stop, [&order, index](std::stop_token) { order.push_back(index); });
        });
    }
    spinUntilIdle();
    ASSERT_EQ(order.size(), size_t(kJobs));
    EXPECT_TRUE(std::ranges::is_sorted(order));
}
