#include "support/ManualExecutor.h"

#include "Recorded.h"
#include "async/TaskGroup.h"
#include "support/Stopped.h"

#include <gtest/gtest.h>

using namespace async;

namespace {

int fail(std::stop_token)
{
    throw std::runtime_error("disk full");
}

struct MoveOnlyJob {
    std::unique_ptr<int> value;
    std::unique_ptr<int> operator()(std::stop_token) { return std::move(value); }
};

Task<> takeMoveOnly(Executor* executor, int* result, std::stop_token stop)
{
    MoveOnlyJob job{std::make_unique<int>(42)};
    const std::unique_ptr<int> value = co_await executor->run(Priority::UserInitiated, stop, std::move(job));
    *result = *value;
}

template <typename Job>
Task<> await(Executor* executor, Priority priority, Job job, std::stop_token stop)
{
    co_await executor->run(priority, stop, job);
}

class ExecutorTest : public testing::Test {
protected:
    template <typename Job>
    void start(std::string name, Job job, Priority priority = Priority::Utility)
    {
        m_group.add([this, name, job, priority](std::stop_token stop) {
            return recorded(&m_log, name, await(&m_executor, priority, job, stop));
        });
    }

    ManualExecutor m_executor;
    Log m_log;
    int m_runs = 0;
    TaskGroup m_group{10};
};

} // namespace

TEST_F(ExecutorTest, GivesResultsAndExceptionsToTheirOwnWaiters)
{
    start(
        "void", [this](std::stop_token) { ++m_runs; }, Priority::Background);
    start("fails", fail, Priority::UserInitiated);
    start("injected", [this](std::stop_token) { ++m_runs; });
    EXPECT_EQ(m_executor.jobs(), (std::vector{Priority::Background, Priority::UserInitiated, Priority::Utility}));
    EXPECT_TRUE(m_executor.runOne());
    EXPECT_TRUE(m_executor.runOne());
    EXPECT_TRUE(m_executor.failOne(std::make_exception_ptr(std::runtime_error("injected fault"))));
    EXPECT_FALSE(m_executor.runOne());
    EXPECT_EQ(m_log, (Log{"void:done", "fails:disk full", "injected:injected fault"}));
    EXPECT_EQ(m_runs, 1);
}

TEST_F(ExecutorTest, MovesJobsAndResultsThatCannotBeCopied)
{
    int result = 0;
    m_group.add([&](std::stop_token stop) { return takeMoveOnly(&m_executor, &result, stop); });
    m_executor.runAll();
    EXPECT_EQ(result, 42);
}

TEST_F(ExecutorTest, AStopDuringTheJobBeatsItsResultAndItsException)
{
    start("value", [this](std::stop_token stop) {
        m_group.cancelAll();
        m_runs += stop.stop_requested();
        return 1;
    });
    m_executor.runAll();
    start("throws", [this](std::stop_token stop) {
        m_group.cancelAll();
        return fail(stop);
    });
    m_executor.runAll();
    EXPECT_EQ(m_log, (Log{"value:cancelled", "throws:cancelled"}));
    EXPECT_EQ(m_runs, 1) << "the job sees the stop";
}

TEST_F(ExecutorTest, AfterAStopNothingIsSubmitted)
{
    m_group.add([&](std::stop_token) {
        return recorded(&m_log, "late", await(&m_executor, Priority::Utility, fail, stoppedToken()));
    });
    EXPECT_EQ(m_executor.pendingCount(), 0);
    MainQueue::drain();
    EXPECT_EQ(m_log, Log{"late:cancelled"});
}

TEST_F(ExecutorTest, TheValuesOfAJobAreGoneWhenItsWaiterResumes)
{
    bool wasGone = false;
    struct Check {
        static Task<> run(Executor* executor, std::shared_ptr<int> held, bool* wasGone, std::stop_token stop)
        {
            const std::weak_ptr<int> watch = held;
            auto job = [moved = std::move(held)](std::stop_token) { return *moved; };
            co_await executor->run(Priority::Utility, stop, std::move(job));
            *wasGone = watch.expired();
        }
    };
    m_group.add(
        [&](std::stop_token stop) { return Check::run(&m_executor, std::make_shared<int>(1), &wasGone, stop); });
    m_executor.runAll();
    EXPECT_TRUE(wasGone);
}
