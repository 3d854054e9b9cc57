#include "analysis/decoding/WorkerClock.h"

#include <chrono>
#include <thread>

WorkerClock WorkerClock::system()
{
    return {.now = [] { return async::Duration(std::chrono::steady_clock::now().time_since_epoch()); },
            .sleep = [](async::Duration duration) { std::this_thread::sleep_for(duration); }};
}
