#include "async/WaitPoint.h"

#include "Recorded.h"

#include <gtest/gtest.h>
#include <thread>

using namespace async;

namespace {

Task<> waitFor(std::shared_ptr<WaitPoint> point)
{
    co_await point->wait();
}

struct Race {
    // w: wait begins, e: the event comes, a: it is given up, s: stop, t: stop from another thread, d: the queue is
    // drained
    std::string steps;
    std::string outcome;
    bool isStopActionRun;
};

class WaitPointRace : public testing::TestWithParam<Race> {};

} // namespace

TEST_P(WaitPointRace, ResumesOnceAndLaterAndAStopBeatsTheEvent)
{
    std::stop_source stop;
    Log log;
    bool wasStopActionRun = false;
    const auto point = std::make_shared<WaitPoint>(stop.get_token());
    point->setStopAction([&] { wasStopActionRun = true; });
    TaskSlot slot;
    for (const char step : GetParam().steps) {
        const size_t before = log.size();
        if (step == 'w')
            slot.start([&](std::stop_token) { return recorded(&log, "wait", waitFor(point)); });
        else if (step == 'e')
            point->settle();
        else if (step == 'a')
            point->abandon();
        else if (step == 's')
            stop.request_stop();
        else if (step == 't')
            std::thread([&] { stop.request_stop(); }).join();
        else
            MainQueue::drain();
        if (step != 'd') {
            EXPECT_EQ(log.size(), before) << "resumed inside step " << step;
        }
    }
    MainQueue::drain();
    EXPECT_EQ(log, Log{"wait:" + GetParam().outcome});
    EXPECT_EQ(wasStopActionRun, GetParam().isStopActionRun);
}

INSTANTIATE_TEST_SUITE_P(
    Orders, WaitPointRace,
    testing::Values(Race{"we", "done", false}, Race{"ew", "done", false}, Race{"wee", "done", false},
                    Race{"wes", "cancelled", false}, Race{"wet", "cancelled", false}, Race{"wse", "cancelled", true},
                    Race{"wte", "cancelled", false}, Race{"wtde", "cancelled", true}, Race{"sw", "cancelled", true},
                    Race{"swe", "cancelled", true}, Race{"esw", "cancelled", false}, Race{"wa", "cancelled", false},
                    Race{"wae", "cancelled", false}, Race{"wea", "done", false}, Race{"weds", "done", false}),
    [](const auto& info) { return info.param.steps; });
