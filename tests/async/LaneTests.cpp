#include "async/Lane.h"

#include "Recorded.h"
#include "async/TaskGroup.h"
#include "support/ManualExecutor.h"

#include <gtest/gtest.h>

using namespace async;

namespace {

Task<> runInLane(Lane* lane, Log* log, std::string name, std::stop_token stop)
{
    const auto job = [log, name](std::stop_token) { log->push_back(name); };
    co_await lane->run(stop, job);
}

class LaneTest : public testing::Test {
protected:
    void start(TaskGroup& group, std::string name)
    {
        group.add([this, name](std::stop_token stop) {
            return recorded(&m_log, name, runInLane(m_lane.get(), &m_log, name, stop));
        });
    }

    ManualExecutor m_executor;
    std::unique_ptr<Lane> m_lane = std::make_unique<Lane>(m_executor, Priority::Background);
    Log m_log;
    TaskGroup m_group{10};
    TaskGroup m_others{10};
};

} // namespace

TEST_F(LaneTest, HasOneJobAtATimeWithTheExecutorAndKeepsTheOrder)
{
    for (const char* name : {"a", "b", "c"})
        start(m_group, name);
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_EQ(m_executor.jobs(), std::vector{Priority::Background}) << "before " << name;
        m_executor.runOne();
    }
    EXPECT_EQ(m_log, (Log{"a", "a:done", "b", "b:done", "c", "c:done"}));
    EXPECT_EQ(m_executor.pendingCount(), 0);
    start(m_group, "d");
    m_executor.runAll();
    EXPECT_EQ(m_log.back(), "d:done") << "an idle lane starts again";
}

TEST_F(LaneTest, PassesOverStoppedJobsAndGoesOnAfterFailures)
{
    start(m_group, "a");
    start(m_others, "stopped");
    start(m_group, "c");
    m_others.cancelAll();
    m_executor.failOne(std::make_exception_ptr(std::runtime_error("no such file")));
    m_executor.runAll();
    EXPECT_EQ(m_log, (Log{"stopped:cancelled", "a:no such file", "c", "c:done"}));
}

TEST_F(LaneTest, WhenDestroyedCancelsWhatWaitsAndLetsTheFirstFinish)
{
    start(m_group, "a");
    start(m_group, "b");
    m_lane.reset();
    m_executor.runAll();
    EXPECT_EQ(m_log, (Log{"b:cancelled", "a", "a:done"}));
}
