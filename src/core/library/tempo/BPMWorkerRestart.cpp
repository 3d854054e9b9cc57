#include "core/library/tempo/BPMWorkerRestart.h"

namespace {

constexpr double kDelayPlaying = 0.5; // seconds; the start of playback comes first
constexpr double kDelay = 0.05;       // seconds
constexpr double kLook = 0.05;        // seconds

} // namespace

BPMWorkerRestart::BPMWorkerRestart(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
{
}

void BPMWorkerRestart::schedule()
{
    m_task.start([this](std::stop_token stop) { return run(stop); });
}

async::Task<> BPMWorkerRestart::run(std::stop_token stop)
{
    const double delay = m_dependencies.isPlaying() ? kDelayPlaying : kDelay;
    co_await m_dependencies.clock.sleep(async::seconds(delay), stop);
    while (m_dependencies.areWorkersRunning())
        co_await m_dependencies.clock.sleep(async::seconds(kLook), stop);
    m_dependencies.startWorkers();
}
