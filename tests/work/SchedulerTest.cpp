#include "NumberWork.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

Allowance whileQuiet(const Circumstances& now, qsizetype)
{
    return {now.isPlaying ? 0 : 1};
}

/// As many as tempos: gentle and alone beside the user, two otherwise.
Allowance gentleBesideTheUser(const Circumstances& now, qsizetype)
{
    const bool isGentle = now.isPlaying || now.isScrolling;
    return {isGentle || now.isConstrained ? 1 : 2, async::Priority::Utility, isGentle ? Pace::Gentle : Pace::Full};
}

constexpr async::Duration kLong = async::seconds(0.6);
const WorkKind kQuality{1, &whileQuiet, 7, {}, kLong, "q"};
const WorkKind kKeys{2, &whileQuiet, 7, {}, kLong, "k"};
const WorkKind kTempo{3, &gentleBesideTheUser, 0, async::seconds(0.5), async::seconds(0.05), "t"};

class SchedulerTest : public testing::Test {
protected:
    void runAll() { m_bench.executor.runAll(); }
    void pass(double seconds) { m_bench.clock.advance(async::seconds(seconds)); }
    std::string log() { return std::exchange(m_log, {}); }

    WorkBench m_bench;
    std::string m_log;
    NumberWork m_tempo{kTempo, m_bench.scheduler, m_bench.executor, &m_log};
    NumberWork m_keys{kKeys, m_bench.scheduler, m_bench.executor, &m_log};
    NumberWork m_quality{kQuality, m_bench.scheduler, m_bench.executor, &m_log};
};

TEST_F(SchedulerTest, KindsOfOneNumberTakeTurnsAndKeepThemUntilTheirQueueIsEmpty)
{
    m_keys.queue.append({1, 2});
    m_quality.queue.append({1, 2});
    m_tempo.queue.append({1, 2, 3});
    EXPECT_EQ(log(), "k1 t1 t2");
    runAll();
    EXPECT_EQ(log(), "k2 t3 q1 q2");
    EXPECT_FALSE(m_bench.scheduler.isBusy());
}

TEST_F(SchedulerTest, AKindThatCannotGoOnGivesItsTurnAway)
{
    m_keys.notNow = {2};
    m_keys.queue.append({1, 2});
    m_quality.queue.append({1});
    runAll();
    EXPECT_EQ(log(), "k1 q1");
}

TEST_F(SchedulerTest, AfterPlayingAllRestAndTheRankDecides)
{
    m_keys.queue.append({1});
    m_quality.queue.append({1});
    log();
    m_bench.scheduler.setPlaying(true);
    runAll();
    pass(60);
    EXPECT_EQ(log(), "");
    m_bench.scheduler.setPlaying(false);
    pass(0.59);
    EXPECT_EQ(log(), "");
    m_bench.scheduler.setPlaying(true); // a short pause
    m_bench.scheduler.setPlaying(false);
    pass(0.59);
    EXPECT_EQ(log(), "");
    pass(0.01);
    EXPECT_EQ(log(), "q1");
    m_bench.scheduler.setPlaying(true); // before the job has seen the stop
    m_bench.scheduler.setPlaying(false);
    pass(10);
    EXPECT_EQ(log(), "");
    runAll();
    EXPECT_EQ(log(), "q1 k1");
}

TEST_F(SchedulerTest, JobsOfTheWrongPaceBeginAnewWhenPlayingBeginsOrEnds)
{
    m_tempo.queue.append({1, 2, 3, 4});
    EXPECT_EQ(log(), "t1 t2");
    m_bench.scheduler.setPlaying(true);
    runAll(); // the stopped ones end
    pass(0.49);
    EXPECT_EQ(log(), "");
    pass(0.01);
    EXPECT_EQ(log(), "t2g");
    m_bench.scheduler.setPlaying(false);
    runAll();
    pass(0.05);
    EXPECT_EQ(log(), "t2 t1");
    m_bench.scheduler.setScrolling(true); // no reason to begin anew
    m_bench.executor.runOne();
    EXPECT_EQ(log(), ""); // one is surplus now
    m_bench.executor.runOne();
    EXPECT_EQ(log(), "t3g");
    m_bench.scheduler.setPlaying(true);
    m_bench.executor.runOne();
    EXPECT_EQ(log(), ""); // nothing begins for half a second
    pass(0.5);
    EXPECT_EQ(log(), "t4g");
    runAll();
    EXPECT_EQ(m_tempo.results, (QList<int>{20, 10, 30, 40}));
}

TEST_F(SchedulerTest, IsToldAndTells)
{
    QSignalSpy circumstances(&m_bench.scheduler, &Scheduler::circumstancesChanged);
    QSignalSpy busy(&m_bench.scheduler, &Scheduler::busyChanged);
    m_bench.scheduler.setConstrained(true);
    m_bench.scheduler.setConstrained(true);
    m_bench.scheduler.setReadingTags(true);
    EXPECT_EQ(circumstances.size(), 2);
    m_tempo.queue.append({1, 2});
    EXPECT_EQ(m_log, "t1");
    m_bench.scheduler.setConstrained(false);
    EXPECT_EQ(m_log, "t1 t2");
    runAll();
    EXPECT_EQ(busy, (QList<QVariantList>{{true}, {false}}));
    EXPECT_FALSE(m_bench.clock.nextDeadline()) << "nothing looks at the clock while there is nothing to do";
}

} // namespace
