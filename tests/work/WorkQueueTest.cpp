#include "NumberWork.h"

#include "async/TaskSlot.h"

#include <gtest/gtest.h>

namespace {

Allowance oneAlways(const Circumstances&, qsizetype)
{
    return {1};
}

Allowance twoAlways(const Circumstances&, qsizetype)
{
    return {2};
}

Allowance noneWhilePlaying(const Circumstances& now, qsizetype)
{
    return {now.isPlaying ? 0 : 2};
}

const WorkKind kOne{1, &oneAlways};
const WorkKind kTwo{1, &twoAlways};
const WorkKind kPaused{1, &noneWhilePlaying};

using Numbers = QList<int>;

class WorkQueueTest : public testing::Test {
protected:
    WorkBench m_bench;
};

TEST_F(WorkQueueTest, TakesEachKeyOnceInOrderAndThePreferredOnesBefore)
{
    NumberWork work(kOne, m_bench.scheduler, m_bench.executor);
    EXPECT_EQ(work.queue.append({1, 2, 3, 2}), (Numbers{1, 2, 3}));
    EXPECT_EQ(work.queue.append({3, 4, 5}), (Numbers{4, 5}));
    work.queue.prefer({5, 4});
    work.queue.prefer({4, 9, 3}); // nine is not queued
    EXPECT_EQ(work.queue.stateOf(1), WorkState::Running);
    EXPECT_EQ(work.queue.stateOf(5), WorkState::Waiting);
    EXPECT_EQ(work.queue.progress(), (WorkProgress{0, 5}));
    m_bench.executor.runAll();
    EXPECT_EQ(work.log(), "1 4 3 2 5");
    EXPECT_TRUE(work.queue.isEmpty());
    EXPECT_EQ(work.queue.stateOf(1), WorkState::None);
    EXPECT_EQ(work.queue.append({1}), Numbers{1}); // a new batch
    EXPECT_EQ(work.queue.progress(), (WorkProgress{0, 1}));
}

TEST_F(WorkQueueTest, AStoppedKeyIsInFrontAtOnceAndNothingBeginsBeforeItsJobHasEnded)
{
    NumberWork work(kPaused, m_bench.scheduler, m_bench.executor);
    work.queue.append({1, 2, 3});
    m_bench.scheduler.setPlaying(true);
    EXPECT_EQ(work.queue.waiting(), (Numbers{2, 1, 3}));
    EXPECT_TRUE(work.queue.running().isEmpty());
    m_bench.scheduler.setPlaying(false);
    EXPECT_EQ(work.log(), "1 2") << "the stopped jobs still run";
    m_bench.executor.runOne();
    EXPECT_EQ(work.log(), "1 2") << "one of them still runs";
    m_bench.executor.runOne();
    EXPECT_EQ(work.queue.running(), (Numbers{2, 1}));
    EXPECT_TRUE(work.results.isEmpty()) << "what a stopped job found counts for nothing";
    m_bench.executor.runAll();
    EXPECT_EQ(work.results, (Numbers{20, 10, 30}));
}

TEST_F(WorkQueueTest, WithdrawnKeysAreGoneAtOnceAndMayComeBack)
{
    NumberWork work(kOne, m_bench.scheduler, m_bench.executor);
    work.queue.append({1, 2, 3});
    work.queue.withdraw({1, 3, 7});
    EXPECT_FALSE(work.queue.isQueued(1));
    EXPECT_EQ(work.queue.waiting(), Numbers{2});
    EXPECT_EQ(work.queue.progress(), (WorkProgress{0, 1}));
    work.queue.append({1});
    EXPECT_EQ(work.log(), "1") << "the withdrawn job has not ended";
    m_bench.executor.runAll();
    EXPECT_EQ(work.log(), "1 2 1");
    EXPECT_EQ(work.results, (Numbers{20, 10}));
    work.queue.append({4, 5});
    work.queue.drop();
    EXPECT_TRUE(work.queue.isEmpty());
    m_bench.executor.runAll();
    EXPECT_EQ(work.results.size(), 2);
}

TEST_F(WorkQueueTest, AFailedKeyGetsOneMoreTryBehindTheOthers)
{
    for (const auto& [end, log] : {std::pair(WorkEnd::OnceMore, "-1 2 -1"), {WorkEnd::Done, "-1 2"}}) {
        NumberWork work(kOne, m_bench.scheduler, m_bench.executor);
        work.failed = {{-1, end}};
        work.queue.append({-1, 2});
        work.queue.prefer({-1}); // once only
        m_bench.executor.runAll();
        EXPECT_EQ(work.log(), log);
        EXPECT_TRUE(work.queue.isEmpty());
    }
    NumberWork work(kOne, m_bench.scheduler, m_bench.executor);
    work.failed = {{-1, WorkEnd::PutBack}};
    work.queue.append({-1, 2});
    m_bench.executor.runOne();
    EXPECT_EQ(work.log(), "-1 -1");
    work.queue.drop();
    m_bench.executor.runAll();
}

TEST_F(WorkQueueTest, UnwantedKeysLeaveAndOthersWaitForTheirTime)
{
    NumberWork work(kTwo, m_bench.scheduler, m_bench.executor);
    work.unwanted = {1, 2};
    work.notNow = {4};
    work.queue.append({1, 2, 3, 4, 5});
    EXPECT_EQ(work.queue.running(), Numbers{3});
    EXPECT_EQ(work.queue.waiting(), (Numbers{4, 5})); // five does not overtake
    work.queue.prefer({5});
    EXPECT_EQ(work.queue.running(), (Numbers{3, 5}));
    work.notNow.clear();
    m_bench.executor.runAll();
    EXPECT_EQ(work.results, (Numbers{30, 50, 40}));
    EXPECT_EQ(work.queue.progress(), (WorkProgress{5, 5}));
}

TEST_F(WorkQueueTest, ManyUnwantedKeysDoNotHoldTheWindowUp)
{
    NumberWork work(kOne, m_bench.scheduler, m_bench.executor);
    Numbers keys;
    for (int key = 0; key < 2000; ++key) {
        keys.append(key);
        work.unwanted.insert(key);
    }
    work.queue.append(keys);
    EXPECT_EQ(work.queue.queuedCount(), 1500);
    m_bench.clock.advance({});
    EXPECT_TRUE(work.queue.isEmpty());
}

TEST_F(WorkQueueTest, AQueueThatGoesStopsItsJobs)
{
    {
        NumberWork work(kTwo, m_bench.scheduler, m_bench.executor);
        work.queue.append({1, 2, 3});
    }
    m_bench.executor.runAll();
    m_bench.scheduler.setPlaying(true); // goes through the queues that are left
    EXPECT_EQ(async::liveTaskCount(), 0);
}

/// Work that waits on the main thread for somebody else.
class SleepingWork final : public WorkConcern<int, bool> {
public:
    explicit SleepingWork(WorkBench& bench)
        : queue(kOne, *this, bench.scheduler, bench.executor)
        , m_bench(bench)
    {
    }
    WorkJob<bool> begin(const int& key, const Allowance&) override
    {
        return WorkJob<bool>::onMain([this, key](std::stop_token stop) { return sleep(m_bench.clock, key, stop); });
    }
    WorkEnd finished(const int& key, std::optional<bool> result) override
    {
        (result ? done : failed).append(key);
        return WorkEnd::Done;
    }
    void statesChanged(const QSet<int>&) override {}

    Numbers done;
    Numbers failed;
    WorkQueue<int, bool> queue;

private:
    static async::Task<bool> sleep(async::Clock& clock, int key, std::stop_token stop)
    {
        if (key < 0)
            throw std::runtime_error("broken");
        co_await clock.sleep(async::seconds(key), stop);
        co_return true;
    }

    WorkBench& m_bench;
};

TEST_F(WorkQueueTest, WaitsOnTheMainThreadToo)
{
    SleepingWork work(m_bench);
    work.queue.append({1, -1, 3, 2});
    m_bench.clock.advance(async::seconds(1));
    EXPECT_EQ(work.done, Numbers{1});
    EXPECT_EQ(work.failed, Numbers{-1});
    work.queue.interruptOthersThan(2);
    EXPECT_EQ(work.queue.waiting(), (Numbers{3, 2}));
    work.queue.prefer({2});
    m_bench.clock.advance(async::seconds(2));
    EXPECT_EQ(work.done, (Numbers{1, 2}));
    m_bench.clock.advance(async::seconds(3));
    EXPECT_EQ(work.done, (Numbers{1, 2, 3}));
}

} // namespace
