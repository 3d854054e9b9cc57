#include "analysis/decoding/DecoderProcessController.h"

namespace {

// Chosen: long enough for a decoder that is healthy to close its files, too short for a user who waits to notice.
constexpr async::Duration kPoliteWait = async::seconds(0.25);
constexpr async::Duration kKillWait = async::seconds(0.5);
constexpr async::Duration kPollInterval = async::seconds(0.01);

} // namespace

DecoderProcessController::DecoderProcessController(std::unique_ptr<ChildProcess> process, WorkerClock clock)
    : m_process(std::move(process))
    , m_clock(std::move(clock))
{
}

bool DecoderProcessController::isRunning()
{
    const std::lock_guard guard(m_lock);
    return m_process->isRunning();
}

void DecoderProcessController::stop()
{
    {
        const std::lock_guard guard(m_lock);
        if (!m_process->isRunning())
            return;
        m_process->terminate();
    }
    if (hasEndedWithin(kPoliteWait))
        return;
    {
        const std::lock_guard guard(m_lock);
        m_process->kill();
    }
    hasEndedWithin(kKillWait); // the caller gives up on it either way
}

std::optional<int> DecoderProcessController::exitStatus()
{
    const std::lock_guard guard(m_lock);
    return m_process->exitStatus();
}

bool DecoderProcessController::hasEndedWithin(async::Duration limit)
{
    const async::Duration deadline = m_clock.now() + limit;
    while (isRunning()) {
        if (m_clock.now() >= deadline)
            return false;
        m_clock.sleep(kPollInterval);
    }
    return true;
}
