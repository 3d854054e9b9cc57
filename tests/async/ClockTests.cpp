#include "support/ManualClock.h"

#include "Recorded.h"
#include "async/TaskGroup.h"
#include "support/Stopped.h"

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

TEST(Clock, ASleepAfterAStopOrForEverIsHarmless)
{
    ManualClock clock;
    Log log;
    TaskSlot slot;
    slot.start([&](std::stop_token) { return recorded(&log, "sleep", clock.sleep(1s, stoppedToken())); });
    EXPECT_EQ(clock.pendingCount(), 0);
    MainQueue::drain();
    EXPECT_EQ(log, Log{"sleep:cancelled"});

    slot.start(sleeper(&clock, &log, "for ever", {Duration::max()}));
    clock.advance(24h);
    EXPECT_EQ(clock.pendingCount(), 1);
    slot.cancel();
    EXPECT_EQ(clock.pendingCount(), 0);
}
