#include "async/TaskSlot.h"

#include "Recorded.h"
#include "async/Completion.h"
#include "async/Lane.h"
#include "async/Permits.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"

#include <gtest/gtest.h>

using namespace async;
using namespace std::chrono_literals;

namespace {

// Everything that a task can wait for, outliving the owner of the task.
struct World {
    ManualClock clock;
    ManualExecutor executor;
    Lane lane{executor, Priority::Utility};
    Permits permits{1};
    Gate gate;
    QObject sender;
    Log log;
    std::function<void()> duringJob;

    void letEverythingHappen()
    {
        executor.runAll();
        clock.advance(1h);
        gate.open();
        permits.release();
        sender.setObjectName(QStringLiteral("changed"));
        MainQueue::drain();
    }
};

struct Wait {
    const char* name;
    Task<> (*begin)(World& world, std::stop_token stop);
};

Task<> job(World& world, std::stop_token stop)
{
    const auto work = [&world](std::stop_token) {
        if (world.duringJob)
            world.duringJob();
    };
    return world.executor.run(Priority::Background, std::move(stop), work);
}

const Wait kWaits[] = {
    {"sleep", [](World& world, std::stop_token stop) { return world.clock.sleep(1s, std::move(stop)); }},
    {"job", &job},
    {"lane",
     [](World& world, std::stop_token stop) { return world.lane.run(std::move(stop), [](std::stop_token) {}); }},
    {"permit", [](World& world, std::stop_token stop) { return world.permits.acquire(std::move(stop)); }},
    {"gate", [](World& world, std::stop_token stop) { return world.gate.wait(std::move(stop)); }},
    {"signal",
     [](World& world, std::stop_token stop) {
         return signalOnce(&world.sender, &QObject::objectNameChanged, std::move(stop));
     }},
};

// Writes into itself after the wait: a fault of memory if it is gone by then.
class Owner {
public:
    explicit Owner(World& world)
        : m_world(world)
    {
    }

    void start(const Wait& wait)
    {
        m_slot.start([this, begin = wait.begin](std::stop_token stop) { return proceedAfter(begin(m_world, stop)); });
    }

    bool isActive() const { return m_slot.isActive(); }

private:
    Task<> proceedAfter(Task<> wait)
    {
        co_await wait;
        ++m_progress;
        m_world.log.push_back("reached");
    }

    World& m_world;
    int m_progress = 0;
    TaskSlot m_slot;
};

class EveryWait : public testing::TestWithParam<Wait> {
protected:
    EveryWait()
    {
        m_holder.start([this](std::stop_token stop) { return m_world.permits.acquire(stop); });
    }

    World m_world;
    TaskSlot m_holder;
};

} // namespace

TEST_P(EveryWait, ResumesItsOwnerOnceTheEventHasCome)
{
    Owner owner(m_world);
    owner.start(GetParam());
    EXPECT_TRUE(owner.isActive());
    m_world.letEverythingHappen();
    EXPECT_EQ(m_world.log, Log{"reached"});
    EXPECT_FALSE(owner.isActive());
}

TEST_P(EveryWait, NeverReachesAnOwnerThatDiedMeanwhile)
{
    auto owner = std::make_unique<Owner>(m_world);
    owner->start(GetParam());
    owner.reset();
    EXPECT_EQ(m_world.clock.pendingCount(), 0);
    EXPECT_EQ(m_world.permits.waiting(), 0);
    EXPECT_EQ(liveTaskCount(), 1) << "the frame runs to its end by itself, on a later turn";
    m_world.letEverythingHappen();
    EXPECT_TRUE(m_world.log.empty());
    EXPECT_EQ(liveTaskCount(), 0);
}

TEST_P(EveryWait, IsSupersededByANewStart)
{
    Owner owner(m_world);
    owner.start(GetParam());
    owner.start(GetParam());
    EXPECT_EQ(liveTaskCount(), 2);
    m_world.letEverythingHappen();
    EXPECT_EQ(m_world.log, Log{"reached"});
}

INSTANTIATE_TEST_SUITE_P(Waits, EveryWait, testing::ValuesIn(kWaits), [](const auto& info) { return info.param.name; });

TEST(TaskSlot, AnOwnerMayDieWhileItsJobRunsOrBeforeItsResumption)
{
    for (const bool isLate : {false, true}) {
        World world;
        auto owner = std::make_unique<Owner>(world);
        // The job's end settles the wait in the turn after the first function; the second runs before the resumption.
        world.duringJob = [&] {
            if (isLate)
                MainQueue::post([&] { MainQueue::post([&] { owner.reset(); }); });
            else
                owner.reset();
        };
        owner->start(Wait{"job", &job});
        world.executor.runAll();
        EXPECT_FALSE(owner);
        EXPECT_TRUE(world.log.empty());
    }
}

namespace {

struct SelfDestroyer {
    ManualClock& clock;
    Log& log;
    std::unique_ptr<SelfDestroyer>& holder;
    TaskSlot slot{};

    static Task<> destroyThenWait(SelfDestroyer* self, bool isAsleepFirst, std::stop_token stop)
    {
        ManualClock& clock = self->clock;
        Log& log = self->log;
        if (isAsleepFirst)
            co_await clock.sleep(1s, stop);
        self->holder.reset();
        log.push_back("destroyed");
        co_await clock.sleep(1s, stop);
        log.push_back("never");
    }
};

} // namespace

TEST(TaskSlot, MayBeDestroyedByItsOwnTask)
{
    for (const bool isAsleepFirst : {false, true}) {
        ManualClock clock;
        Log log;
        std::unique_ptr<SelfDestroyer> holder(new SelfDestroyer{clock, log, holder});
        SelfDestroyer* const self = holder.get();
        self->slot.start([self, isAsleepFirst](std::stop_token stop) {
            return SelfDestroyer::destroyThenWait(self, isAsleepFirst, stop);
        });
        clock.advance(5s);
        EXPECT_EQ(log, Log{"destroyed"});
        EXPECT_EQ(clock.pendingCount(), 0);
    }
}

TEST(TaskSlot, MayBeOwnedByWhatItsTaskHolds)
{
    ManualClock clock;
    auto slot = std::make_shared<TaskSlot>();
    const std::weak_ptr<TaskSlot> watch = slot;
    slot->start([&clock, slot](std::stop_token stop) { return clock.sleep(1s, stop); });
    slot.reset();
    EXPECT_FALSE(watch.expired());
    clock.advance(2s);
    EXPECT_TRUE(watch.expired());
}

TEST(TaskSlot, StopsTheOldTaskBeforeTheNewOneStarts)
{
    ManualClock clock;
    TaskSlot slot;
    slot.start([&](std::stop_token stop) { return clock.sleep(1s, stop); });
    int sleepersAtStart = -1;
    slot.start([&](std::stop_token stop) {
        sleepersAtStart = clock.pendingCount();
        return clock.sleep(2s, stop);
    });
    EXPECT_EQ(sleepersAtStart, 0);
    slot.cancel();
    EXPECT_FALSE(slot.isActive());
}

namespace {

Task<> failAtOnce()
{
    throw std::runtime_error("broken");
    co_return;
}

} // namespace

#ifdef NDEBUG
TEST(TaskSlot, ReportsAnExceptionThatNobodyCaught)
{
    static QString message;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtCriticalMsg)
                message = text;
        });
    TaskSlot slot;
    slot.start([](std::stop_token) { return failAtOnce(); });
    qInstallMessageHandler(previous);
    EXPECT_TRUE(message.contains(QStringLiteral("broken")));
    EXPECT_FALSE(slot.isActive());
}
#else
TEST(TaskSlotDeathTest, AnExceptionThatNobodyCaughtEndsTheProgram)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    TaskSlot slot;
    EXPECT_DEATH(slot.start([](std::stop_token) { return failAtOnce(); }), "broken");
}
#endif
