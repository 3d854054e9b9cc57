#pragma once

#include "async/Clock.h"

#include <functional>

/// Time for work that blocks a worker thread while a program runs beside it. Tests put in a time of their own. Thread:
/// any.
struct WaitClock {
    std::function<async::Duration()> now; ///< monotonic, since any origin
    /// Blocks for the duration, less if the descriptor becomes readable before; a negative descriptor never does.
    std::function<void(async::Duration, int descriptor)> wait;

    /// The system's monotonic clock, whose waits are real.
    static WaitClock system();
};
