#include "async/Clock.h"

#include "async/WaitPoint.h"

namespace async {

Task<> Clock::sleep(Duration duration, std::stop_token stop)
{
    const auto point = std::make_shared<WaitPoint>(stop);
    if (duration <= Duration::zero()) {
        point->settle();
    } else if (!stop.stop_requested()) {
        const Duration start = now();
        const Duration deadline = duration > Duration::max() - start ? Duration::max() : start + duration;
        const quint64 handle = schedule(deadline, [point] { point->settle(); });
        point->setStopAction([this, handle] { forget(handle); });
    }
    co_await point->wait();
}

} // namespace async
