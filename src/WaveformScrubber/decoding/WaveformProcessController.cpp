#include "WaveformScrubber/decoding/WaveformProcessController.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace {

// Chosen: long enough for a decoder that is healthy to close its files, too short for a user who waits to notice.
constexpr async::Duration kPoliteWait = async::seconds(0.25);
constexpr async::Duration kKillWait = async::seconds(0.5);
constexpr async::Duration kPollInterval = async::seconds(0.01);

Descriptor endOf([[maybe_unused]] qint64 processID)
{
#ifdef SYS_pidfd_open
    return Descriptor(int(::syscall(SYS_pidfd_open, pid_t(processID), 0)));
#else
    return {};
#endif
}

} // namespace

WaveformProcessController::WaveformProcessController(const ChildProcess::Launch& launch, WaitClock clock)
    : m_process(launch)
    , m_end(endOf(m_process.processID()))
    , m_clock(std::move(clock))
{
}

bool WaveformProcessController::isRunning()
{
    const std::lock_guard guard(m_lock);
    return m_process.isRunning();
}

void WaveformProcessController::wait(async::Duration duration)
{
    m_clock.wait(duration, m_end.get());
}

void WaveformProcessController::stop()
{
    {
        const std::lock_guard guard(m_lock);
        if (!m_process.isRunning())
            return;
        m_process.terminate();
    }
    if (hasEndedWithin(kPoliteWait))
        return;
    {
        const std::lock_guard guard(m_lock);
        m_process.kill();
    }
    hasEndedWithin(kKillWait); // the caller gives up on it either way
}

std::optional<int> WaveformProcessController::exitStatus()
{
    const std::lock_guard guard(m_lock);
    return m_process.exitStatus();
}

bool WaveformProcessController::hasEndedWithin(async::Duration limit)
{
    const async::Duration deadline = m_clock.now() + limit;
    while (isRunning()) {
        if (m_clock.now() >= deadline)
            return false;
        wait(kPollInterval);
    }
    return true;
}
