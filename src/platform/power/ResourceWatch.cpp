#include "platform/power/ResourceWatch.h"

#include "platform/power/PowerState.h"

namespace {

constexpr double kPause = 10; // seconds; neither a battery nor a heat sink is faster

} // namespace

ResourceWatch::ResourceWatch(async::Clock& clock, async::Executor& executor, QString root)
    : m_clock(clock)
    , m_executor(executor)
    , m_root(std::move(root))
{
}

void ResourceWatch::setWatching(bool isWatching)
{
    if (!isWatching)
        m_look.cancel();
    else if (!m_look.isActive())
        m_look.start([this](std::stop_token stop) { return look(stop); });
}

async::Task<> ResourceWatch::look(std::stop_token stop)
{
    for (;;) {
        auto job = [root = m_root](const std::stop_token&) { return PowerState::areResourcesConstrained(root); };
        const bool isConstrained = co_await m_executor.run(async::Priority::Background, stop, std::move(job));
        if (std::exchange(m_isConstrained, isConstrained) != isConstrained)
            emit constrainedChanged(isConstrained);
        co_await m_clock.sleep(async::seconds(kPause), stop);
    }
}
