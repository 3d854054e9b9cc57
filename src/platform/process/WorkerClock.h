#pragma once

#include "async/Clock.h"

#include <functional>

/// Time for code that blocks a worker thread until something has happened: unlike async::Clock, which only main-thread
/// coroutines can sleep on. Tests put in a time of their own. Thread: any.
struct WorkerClock {
    std::function<async::Duration()> now; ///< monotonic, since any origin
    /// Blocks for the duration, less if the descriptor becomes readable before; a negative descriptor never does.
    std::function<void(async::Duration, int descriptor)> wait;

    void sleep(async::Duration duration) const { wait(duration, -1); }

    /// The system's monotonic clock, whose waits are real.
    static WorkerClock system();
};
