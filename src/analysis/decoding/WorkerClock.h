#pragma once

#include "async/Clock.h"

#include <functional>

/// Time for code that blocks a worker thread until something has happened: unlike async::Clock, which only main-thread
/// coroutines can sleep on. Tests put in a time of their own. Thread: any.
struct WorkerClock {
    std::function<async::Duration()> now;       ///< monotonic, since any origin
    std::function<void(async::Duration)> sleep; ///< blocks the calling thread

    /// The system's monotonic clock, whose sleeps are real.
    static WorkerClock system();
};
