#pragma once

#include "async/Clock.h"

#include <map>
#include <memory>

namespace async {

/// The system's monotonic clock, its delays driven by one timer of the main thread's event loop. Never fires early and,
/// with an idle loop, at most a millisecond or two late. Exists only while the application object does. Thread: main.
class SystemClock final : public Clock {
public:
    /// Needs the application object.
    SystemClock();
    /// Forgets all deadlines; tasks that sleep on it are stopped before.
    ~SystemClock() override;

    /// Since the machine's start or another fixed point: only differences mean something, and only within one run.
    Duration now() const override;

protected:
    quint64 schedule(Duration deadline, std::function<void()> fire) override;
    void forget(quint64 handle) override;

private:
    class Timer;
    using Key = std::pair<Duration, quint64>;

    void fireDue();
    void arm();

    std::map<Key, std::function<void()>> m_deadlines;
    std::map<quint64, Duration> m_deadlineOfHandle;
    std::unique_ptr<Timer> m_timer;
    quint64 m_lastHandle = 0;
};

} // namespace async
