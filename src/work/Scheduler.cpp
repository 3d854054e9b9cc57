#include "work/Scheduler.h"

#include "async/MainQueue.h"
#include "work/ScheduledWork.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace {

constexpr int kStepsPerTurn = 500; // chosen: a fraction of a millisecond each turn

} // namespace

Scheduler::Scheduler(async::Clock& clock)
    : m_clock(clock)
{
}

Scheduler::~Scheduler() = default;

void Scheduler::add(ScheduledWork& work)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const auto behind =
        std::ranges::find_if(m_places, [&](const Place& place) { return place.work->kind().rank > work.kind().rank; });
    m_places.insert(behind, Place{&work, {}});
}

void Scheduler::remove(ScheduledWork& work)
{
    VELMORA_ASSERT_MAIN_THREAD();
    std::erase_if(m_places, [&](const Place& place) { return place.work == &work; });
    m_turns.removeIf([&](const auto& turn) { return turn.value() == &work; });
}

void Scheduler::setPlaying(bool isPlaying)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_now.isPlaying == isPlaying)
        return;
    m_now.isPlaying = isPlaying;
    for (Place& place : m_places) {
        const WorkKind& kind = place.work->kind();
        place.restsUntil = m_clock.now() + (isPlaying ? kind.restAtPlaying : kind.restAfterPlaying);
    }
    for (const Place& place : std::vector<Place>(m_places)) { // all rest before the first concern hears of a stop
        const Allowance allowance = place.work->kind().allow(m_now, place.work->queuedCount());
        if (allowance.atOnce > 0)
            place.work->stopOthersThan(allowance.pace);
    }
    settle();
    emit circumstancesChanged();
}

void Scheduler::setScrolling(bool isScrolling)
{
    set(&Circumstances::isScrolling, isScrolling);
}

void Scheduler::setReadingTags(bool isReading)
{
    set(&Circumstances::isReadingTags, isReading);
}

void Scheduler::setConstrained(bool isConstrained)
{
    set(&Circumstances::isConstrained, isConstrained);
}

void Scheduler::set(bool Circumstances::*which, bool value)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (std::exchange(m_now.*which, value) == value)
        return;
    settle();
    emit circumstancesChanged();
}

/// Jobs that end at once and keys that nobody wants call this again from inside; the outer call goes on, and gives the
/// window a turn in between.
void Scheduler::settle()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_isChanged = true;
    if (m_isSettling)
        return;
    {
        const QScopedValueRollback settling(m_isSettling, true);
        int steps = 0;
        while (std::exchange(m_isChanged, false) && steps < kStepsPerTurn) {
            for (const Place& place : std::vector<Place>(m_places))
                settle(place, steps);
        }
        if (steps >= kStepsPerTurn)
            wakeAt(m_clock.now());
        else
            wakeAfterRest();
    }
    tellBusy();
}

void Scheduler::settle(const Place& place, int& steps)
{
    ScheduledWork& work = *place.work;
    for (;;) {
        const Allowance allowance = work.kind().allow(m_now, work.queuedCount());
        if (allowance.atOnce == 0) {
            work.stopAll();
            giveUpTurn(work);
            return;
        }
        const bool mayBegin = work.isAnyWaiting() && !work.isAnyEnding() && work.runningCount() < allowance.atOnce &&
                              m_clock.now() >= place.restsUntil && isTurnOf(work) && steps < kStepsPerTurn;
        if (!mayBegin)
            return;
        ++steps;
        const ScheduledWork::Step step = work.beginNext(allowance);
        if (step == ScheduledWork::Step::Nothing) {
            giveUpTurn(work);
            return;
        }
        if (step == ScheduledWork::Step::Began && work.kind().exclusive != 0)
            m_turns.insert(work.kind().exclusive, &work);
    }
}

/// Those that were excluded may begin, also ones of a higher rank that have been asked already.
void Scheduler::giveUpTurn(const ScheduledWork& work)
{
    if (m_turns.removeIf([&](const auto& turn) { return turn.value() == &work; }) > 0)
        m_isChanged = true;
}

/// Of kinds that exclude each other, the one that runs goes on until its queue is empty or it is paused.
bool Scheduler::isTurnOf(const ScheduledWork& work) const
{
    const int exclusive = work.kind().exclusive;
    return exclusive == 0 || std::ranges::none_of(m_places, [&](const Place& place) {
               const ScheduledWork& other = *place.work;
               const bool excludes = &other != &work && other.kind().exclusive == exclusive;
               return excludes &&
                      (other.runningCount() > 0 || (m_turns.value(exclusive) == &other && other.isAnyWaiting()));
           });
}

void Scheduler::wakeAfterRest()
{
    std::optional<async::Duration> earliest;
    for (const Place& place : m_places) {
        if (place.work->isAnyWaiting() && place.restsUntil > m_clock.now())
            earliest = earliest ? std::min(*earliest, place.restsUntil) : place.restsUntil;
    }
    if (earliest)
        wakeAt(*earliest);
}

void Scheduler::wakeAt(async::Duration time)
{
    if (m_wakesAt == time)
        return;
    m_wakesAt = time;
    m_wake.start([this, delay = time - m_clock.now()](std::stop_token stop) { return wakeLater(delay, stop); });
}

async::Task<> Scheduler::wakeLater(async::Duration delay, std::stop_token stop)
{
    co_await m_clock.sleep(delay, stop);
    m_wakesAt.reset();
    settle();
}

void Scheduler::tellBusy()
{
    const bool isBusy = std::ranges::any_of(m_places, [](const Place& place) { return place.work->queuedCount() > 0; });
    if (std::exchange(m_isBusy, isBusy) != isBusy)
        emit busyChanged(isBusy);
}
