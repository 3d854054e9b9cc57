#include "platform/process/WorkerClock.h"

#include <chrono>

#include <poll.h>

WorkerClock WorkerClock::system()
{
    return {.now = [] { return async::Duration(std::chrono::steady_clock::now().time_since_epoch()); },
            .wait =
                [](async::Duration duration, int descriptor) {
                    pollfd entry{.fd = descriptor, .events = POLLIN, .revents = 0};
                    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(duration).count();
                    ::poll(&entry, 1, int(milliseconds)); // an early end by a signal only costs one more look
                }};
}
