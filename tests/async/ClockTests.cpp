#include "support/ManualClock.h"

#include "Recorded.h"
#include "async/TaskGroup.h"

#include <gtest/gtest.h>

using namespace async;
using namespace std::chrono_literals;

namespace {

Task<> sleepAndLog(ManualClock* clock, Log* log, std::string name, std::vector<Duration> naps, std::stop_token stop)
{
    for (const Duration nap : naps) {
        co_await clock->sleep(nap, stop);
        log->push_back(name + "@" + std::to_string(clock->now() / 1ms - 3600000));
    }
}

TaskFactory sleeper(ManualClock* clock, Log* log, std::string name, std::vector<Duration> naps)
{
    return [=](std::stop_token stop) { return sleepAndLog(clock, log, name, naps, stop); };
}

} // namespace

TEST(Clock, FiresInOrderOfDeadlinesAndOfSleepersEachAtItsOwnTime)
{
    ManualClock clock;
    Log log;
    TaskGroup group(10);
    group.add(sleeper(&clock, &log, "late", {30ms}));
    group.add(sleeper(&clock, &log, "first", {10ms, 10ms, 5ms}));
    group.add(sleeper(&clock, &log, "second", {10ms, 20ms}));
    group.add(sleeper(&clock, &log, "beyond", {41ms}));
    EXPECT_EQ(clock.pendingCount(), 4);
    EXPECT_EQ(clock.nextDeadline(), Duration(10ms));
    clock.advance(40ms);
    EXPECT_EQ(log, (Log{"first@10", "second@10", "first@20", "first@25", "late@30", "second@30"}));
    EXPECT_EQ(clock.nextDeadline(), Duration(1ms));
}

TEST(Clock, ADelayOfNothingResumesOnTheNextTurn)
{
    for (const Duration nap : {Duration(0), Duration(-5ms)}) {
        ManualClock clock;
        Log log;
        TaskSlot slot;
        slot.start(sleeper(&clock, &log, "nap", {nap}));
        EXPECT_TRUE(log.empty());
        EXPECT_EQ(clock.pendingCount(), 0);
        MainQueue::drain();
        EXPECT_EQ(log, Log{"nap@0"});
    }
}

TEST(Clock, AStoppedSleepLeavesAtOnce)
{
    ManualClock clock;
    Log log;
    TaskSlot stopped;
    TaskSlot kept;
    stopped.start(sleeper(&clock, &log, "stopped", {10ms}));
    kept.start(sleeper(&clock, &log, "kept", {20ms}));
    stopped.cancel();
    EXPECT_EQ(clock.pendingCount(), 1);
    EXPECT_EQ(clock.nextDeadline(), Duration(20ms));
    clock.advance(1s);
    EXPECT_EQ(log, Log{"kept@20"});
}

TEST(Clock, ASleepAfterAStopOrForEverIsHarmless)
{
    ManualClock clock;
    Log log;
    std::stop_source stopped;
    stopped.request_stop();
    TaskSlot slot;
    slot.start([&](std::stop_token) { return recorded(&log, "sleep", clock.sleep(1s, stopped.get_token())); });
    EXPECT_EQ(clock.pendingCount(), 0);
    MainQueue::drain();
    EXPECT_EQ(log, Log{"sleep:cancelled"});

    slot.start(sleeper(&clock, &log, "for ever", {Duration::max()}));
    clock.advance(24h);
    EXPECT_EQ(clock.pendingCount(), 1);
    slot.cancel();
    EXPECT_EQ(clock.pendingCount(), 0);
}
