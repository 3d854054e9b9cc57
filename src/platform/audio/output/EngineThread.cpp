#include "platform/audio/output/EngineThread.h"

#include <QtGlobal>

#include <exception>
#include <utility>

void EngineThread::start(Turn turn)
{
    m_thread = std::thread([this, turn = std::move(turn)] { run(turn); });
}

void EngineThread::post(std::function<void()> task)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_isFinishing)
            return;
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
}

void EngineThread::finish()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isFinishing = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

std::deque<std::function<void()>> EngineThread::take(Seconds rest)
{
    std::unique_lock lock(m_mutex);
    if (rest.count() > 0)
        m_wake.wait_for(lock, rest, [this] { return m_isFinishing || !m_tasks.empty(); });
    return std::exchange(m_tasks, {});
}

void EngineThread::run(const Turn& turn)
{
    Seconds rest{0};
    for (;;) {
        for (const std::function<void()>& task : take(rest)) {
            try {
                task();
            } catch (const std::exception& error) { // memory or threads ran out: this file is not heard, the program is
                qCritical("sound: %s", error.what());
            }
        }
        {
            const std::lock_guard lock(m_mutex);
            if (m_isFinishing && m_tasks.empty())
                return;
        }
        rest = turn();
    }
}
