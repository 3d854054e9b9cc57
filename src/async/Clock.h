#pragma once

#include "async/Task.h"

#include <chrono>
#include <functional>
#include <stop_token>

namespace async {

/// Spans of time and points of a Clock's time alike; signed, about 292 years at most.
using Duration = std::chrono::nanoseconds;

/// Seconds as the rest of the program writes them.
constexpr Duration seconds(double value)
{
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(value));
}

/// Source of monotonic time and of delays. SystemClock in the program, ManualClock in tests. A clock outlives whatever
/// sleeps on it. Thread: main.
class Clock {
public:
    virtual ~Clock() = default;

    /// Monotonic time since an arbitrary origin.
    virtual Duration now() const = 0;
    /// Resumes on the main queue once \p duration has passed; a duration of zero or less resumes on the queue's next
    /// turn. Throws Cancelled after a stop request, and is then forgotten by the clock at once.
    Task<> sleep(Duration duration, std::stop_token stop);

protected:
    /// Calls \p fire once on the main thread when \p deadline (in now()'s time) is reached. \return a handle for
    /// forget().
    virtual quint64 schedule(Duration deadline, std::function<void()> fire) = 0;
    /// Drops a deadline that has not fired; unknown handles are ignored.
    virtual void forget(quint64 handle) = 0;
};

} // namespace async
