#include "platform/process/DecoderProcessController.h"

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

DecoderProcessController::DecoderProcessController(const ChildProcess::Launch& launch, WorkerClock clock)
    : m_process(launch)
    , m_end(endOf(m_process.processID()))
    , m_clock(std::move(clock))
{
}

bool DecoderProcessController::isRunning()
{
    const std::lock_guard guard(m_lock);
    return m_process.isRunning();
}

DecoderProcessController::End DecoderProcessController::waitForEnd(const Patience& patience,
                                                                   const std::stop_token& stopToken)
{
    const async::Duration deadline = m_clock.now() + patience.timeout;
    while (isRunning()) {
        const bool isStopped = stopToken.stop_requested();
        if (isStopped || m_clock.now() >= deadline) {
            stop();
            return isStopped ? End::Stopped : End::TimedOut;
        }
        m_clock.wait(patience.interval, m_end.get());
    }
    return stopToken.stop_requested() ? End::Stopped : End::Ended;
}

void DecoderProcessController::stop()
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

std::optional<int> DecoderProcessController::exitStatus()
{
    const std::lock_guard guard(m_lock);
    return m_process.exitStatus();
}

bool DecoderProcessController::hasEndedWithin(async::Duration limit)
{
    const async::Duration deadline = m_clock.now() + limit;
    while (isRunning()) {
        if (m_clock.now() >= deadline)
            return false;
        m_clock.wait(kPollInterval, m_end.get());
    }
    return true;
}
