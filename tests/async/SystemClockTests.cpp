#include "async/SystemClock.h"

#include "Recorded.h"
#include "async/TaskGroup.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

using namespace async;
using namespace std::chrono_literals;

namespace {

Task<> sleepOften(SystemClock* clock, int naps, Duration nap, int* early, std::stop_token stop)
{
    for (int index = 0; index < naps; ++index) {
        const Duration start = clock->now();
        co_await clock->sleep(nap, stop);
        if (clock->now() - start < nap)
            ++*early;
    }
}

Task<> sleepThenLog(SystemClock* clock, Duration nap, Log* log, std::string name, std::stop_token stop)
{
    co_await clock->sleep(nap, stop);
    log->push_back(name);
}

} // namespace

TEST(SystemClock, NeverFiresEarlyAndKeepsTheOrder)
{
    SystemClock clock;
    Log log;
    int early = 0;
    TaskGroup group(1000);
    const std::vector<std::pair<Duration, const char*>> naps = {{30ms, "c"}, {10ms, "a"}, {20ms, "b"}, {0ms, "now"}};
    for (const auto& nap : naps)
        group.add([&, nap](std::stop_token stop) { return sleepThenLog(&clock, nap.first, &log, nap.second, stop); });
    for (int index = 0; index < 200; ++index)
        group.add([&](std::stop_token stop) { return sleepOften(&clock, 10, 1500us, &early, stop); });
    spinUntilIdle();
    EXPECT_EQ(early, 0);
    EXPECT_EQ(log, (Log{"now", "a", "b", "c"}));
}

TEST(SystemClock, AForgottenFirstDeadlineDoesNotDelayTheNext)
{
    SystemClock clock;
    Log log;
    TaskSlot first;
    TaskSlot second;
    TaskSlot never;
    first.start([&](std::stop_token stop) { return sleepThenLog(&clock, 1ms, &log, "first", stop); });
    second.start([&](std::stop_token stop) { return sleepThenLog(&clock, 5ms, &log, "second", stop); });
    never.start([&](std::stop_token stop) { return sleepThenLog(&clock, Duration::max(), &log, "never", stop); });
    first.cancel();
    while (log.empty())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(log, Log{"second"});
    never.cancel();
    spinUntilIdle();
    EXPECT_EQ(log, Log{"second"});
}
