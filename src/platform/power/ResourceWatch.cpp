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

bool ResourceWatch::areConstrained()
{
    const async::Duration now = m_clock.now();
    const bool isOld = !m_lookedAt || now - *m_lookedAt >= async::seconds(kPause);
    if (isOld && !m_look.isActive()) {
        m_lookedAt = now;
        m_look.start([this](std::stop_token stop) { return look(stop); });
    }
    return m_areConstrained;
}

async::Task<> ResourceWatch::look(std::stop_token stop)
{
    auto job = [root = m_root](const std::stop_token&) { return PowerState::areResourcesConstrained(root); };
    m_areConstrained = co_await m_executor.run(async::Priority::Background, stop, std::move(job));
}
