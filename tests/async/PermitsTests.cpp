#include "async/Permits.h"

#include "Recorded.h"
#include "async/Completion.h"

#include <gtest/gtest.h>

using namespace async;

namespace {

struct Line {
    const char* name;
    int limit;
    // a, b, c: that one asks; A, B, C: it is stopped; r: release; d: the queue is drained
    const char* steps;
    Log log;
    int active;
    int waiting;
};

class PermitLine : public testing::TestWithParam<Line> {};

} // namespace

TEST_P(PermitLine, ServesInOrder)
{
    Permits permits(GetParam().limit);
    Log log;
    std::map<char, TaskSlot> tasks;
    for (const char step : std::string(GetParam().steps)) {
        if (step == 'r')
            permits.release();
        else if (step == 'd')
            MainQueue::drain();
        else if (step >= 'A' && step <= 'C')
            tasks[char(step - 'A' + 'a')].cancel();
        else
            tasks[step].start([&, step](std::stop_token stop) {
                return recorded(&log, std::string(1, step), permits.acquire(stop));
            });
    }
    MainQueue::drain();
    EXPECT_EQ(log, GetParam().log);
    EXPECT_EQ(permits.active(), GetParam().active);
    EXPECT_EQ(permits.waiting(), GetParam().waiting);
    for (auto& slot : tasks)
        slot.second.cancel();
    MainQueue::drain();
}

INSTANTIATE_TEST_SUITE_P(
    Lines, PermitLine,
    testing::Values(Line{"free", 2, "ab", {"a:done", "b:done"}, 2, 0},
                    Line{"third_waits", 2, "abc", {"a:done", "b:done"}, 2, 1},
                    Line{"first_in_line_first", 1, "abcrr", {"a:done", "b:done", "c:done"}, 1, 0},
                    Line{"release_to_nobody", 2, "abr", {"a:done", "b:done"}, 1, 0},
                    Line{"never_below_zero", 1, "rrarr", {"a:done"}, 0, 0},
                    Line{"stopped_leaves_the_line", 1, "abcBr", {"a:done", "b:cancelled", "c:done"}, 1, 0},
                    Line{"stopped_after_hand_over", 1, "abcrB", {"a:done", "b:cancelled", "c:done"}, 1, 0},
                    Line{"last_stopped_after_hand_over", 1, "abrB", {"a:done", "b:cancelled"}, 0, 0},
                    Line{"all_stopped", 1, "abcrBC", {"a:done", "b:cancelled", "c:cancelled"}, 0, 0},
                    Line{"no_overtaking", 1, "abrc", {"a:done", "b:done"}, 1, 1}),
    [](const auto& info) { return info.param.name; });

namespace {

Task<> store(Completion<std::string>* completion, Log* log, std::stop_token stop)
{
    log->push_back(co_await completion->wait(stop));
}

} // namespace

TEST(Permits, DestructionCancelsThoseWhoWait)
{
    auto permits = std::make_unique<Permits>(1);
    Log log;
    TaskSlot holder;
    TaskSlot waiter;
    holder.start([&](std::stop_token stop) { return permits->acquire(stop); });
    waiter.start([&](std::stop_token stop) { return recorded(&log, "waiter", permits->acquire(stop)); });
    permits.reset();
    MainQueue::drain();
    EXPECT_EQ(log, Log{"waiter:cancelled"});
}

TEST(Completion, GivesTheFirstValueToAllWhoWaitAndToLateOnes)
{
    auto completion = std::make_unique<Completion<std::string>>();
    Log log;
    TaskSlot tasks[4];
    for (TaskSlot& slot : std::span(tasks).first(3))
        slot.start([&](std::stop_token stop) { return store(completion.get(), &log, stop); });
    tasks[1].cancel();
    completion->resolve("first");
    completion->resolve("second");
    EXPECT_TRUE(log.empty());
    MainQueue::drain();
    tasks[3].start([&](std::stop_token stop) { return store(completion.get(), &log, stop); });
    EXPECT_EQ(log, (Log{"first", "first", "first"}));
}

TEST(Completion, DestroyedUnresolvedCancels)
{
    auto completion = std::make_unique<Completion<std::string>>();
    Log log;
    TaskSlot slot;
    slot.start([&](std::stop_token stop) { return recorded(&log, "wait", store(completion.get(), &log, stop)); });
    completion.reset();
    MainQueue::drain();
    EXPECT_EQ(log, Log{"wait:cancelled"});
}

TEST(SignalOnce, EndsWithTheSignalOrWithItsSender)
{
    Log log;
    TaskSlot slot;
    auto sender = std::make_unique<QObject>();
    const auto wait = [&](std::stop_token stop) {
        return recorded(&log, "signal", signalOnce(sender.get(), &QObject::objectNameChanged, stop));
    };
    slot.start(wait);
    sender->setObjectName(QStringLiteral("a"));
    sender->setObjectName(QStringLiteral("b"));
    MainQueue::drain();
    EXPECT_EQ(log, Log{"signal:done"});
    slot.start(wait);
    sender.reset();
    MainQueue::drain();
    EXPECT_EQ(log, (Log{"signal:done", "signal:cancelled"}));
}
