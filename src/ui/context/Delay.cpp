#include "ui/context/Delay.h"

Delay::Delay(async::Clock& clock, async::Duration pause, std::function<void()> then)
    : m_clock(clock)
    , m_pause(pause)
    , m_then(std::move(then))
{
}

void Delay::start()
{
    m_end = m_clock.now() + m_pause;
    if (!std::exchange(m_isActive, true))
        m_task.start([this](std::stop_token stop) { return run(std::move(stop)); });
}

void Delay::startOnce()
{
    if (!m_isActive)
        start();
}

void Delay::stop()
{
    m_isActive = false;
    m_task.cancel();
}

async::Task<> Delay::run(std::stop_token stop)
{
    while (m_clock.now() < m_end)
        co_await m_clock.sleep(m_end - m_clock.now(), stop);
    m_isActive = false;
    m_then();
}
