#include "async/SystemClock.h"

#include "async/MainQueue.h"

#include <QBasicTimer>
#include <QObject>

namespace async {

namespace {

// Longest single wait of the toolkit's timer that is used; a later deadline is waited for in several steps. Chosen: a
// day.
constexpr std::chrono::milliseconds kLongestWait = std::chrono::hours(24);

} // namespace

class SystemClock::Timer : public QObject {
public:
    explicit Timer(SystemClock& clock)
        : m_clock(clock)
    {
    }

    void start(std::chrono::milliseconds wait) { m_timer.start(int(wait.count()), Qt::PreciseTimer, this); }
    void stop() { m_timer.stop(); }

protected:
    void timerEvent(QTimerEvent*) override { m_clock.fireDue(); }

private:
    SystemClock& m_clock;
    QBasicTimer m_timer;
};

SystemClock::SystemClock()
    : m_timer(std::make_unique<Timer>(*this))
{
}

SystemClock::~SystemClock() = default;

Duration SystemClock::now() const
{
    return std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch());
}

quint64 SystemClock::schedule(Duration deadline, std::function<void()> fire)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const quint64 handle = ++m_lastHandle;
    const auto place = m_deadlines.emplace(Key(deadline, handle), std::move(fire)).first;
    m_deadlineOfHandle.emplace(handle, deadline);
    if (place == m_deadlines.begin())
        arm();
    return handle;
}

void SystemClock::forget(quint64 handle)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const auto known = m_deadlineOfHandle.find(handle);
    if (known == m_deadlineOfHandle.end())
        return;
    const auto place = m_deadlines.find(Key(known->second, handle));
    const bool wasFirst = place == m_deadlines.begin();
    m_deadlines.erase(place);
    m_deadlineOfHandle.erase(known);
    if (wasFirst)
        arm();
}

void SystemClock::fireDue()
{
    const Duration due = now();
    while (!m_deadlines.empty() && m_deadlines.begin()->first.first <= due) {
        auto node = m_deadlines.extract(m_deadlines.begin());
        m_deadlineOfHandle.erase(node.key().second);
        node.mapped()();
    }
    arm();
}

void SystemClock::arm()
{
    if (m_deadlines.empty()) {
        m_timer->stop();
        return;
    }
    const Duration wait = std::max(Duration::zero(), m_deadlines.begin()->first.first - now());
    m_timer->start(std::min(std::chrono::ceil<std::chrono::milliseconds>(wait), kLongestWait));
}

} // namespace async
