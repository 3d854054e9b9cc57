#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"

#include <functional>

/// Calls once after a pause, by the window's clock. Thread: main.
class Delay {
public:
    /// \param clock outlives the delay. \param then may start it again.
    Delay(async::Clock& clock, async::Duration pause, std::function<void()> then);

    /// Counts the pause from now on, also where it runs already.
    void start();
    /// Starts, unless it runs already: a burst of calls becomes one.
    void startOnce();
    /// What was to be called is not; start() begins anew.
    void stop();
    /// Whether the call is still to come.
    bool isActive() const { return m_isActive; }

private:
    async::Task<> run(std::stop_token stop);

    async::Clock& m_clock;
    const async::Duration m_pause;
    std::function<void()> m_then;
    async::Duration m_end{}; ///< in the clock's time
    bool m_isActive = false;
    async::TaskSlot m_task;
};
