#include "async/WorkerPool.h"

#include "async/ThreadNiceness.h"

#include <system_error>

namespace async {

WorkerPool::WorkerPool(int niceness, int threadLimit)
    : m_niceness(niceness)
    , m_threadLimit(size_t(std::max(threadLimit, 1)))
{
}

WorkerPool::~WorkerPool()
{
    close();
    for (std::thread& thread : m_threads)
        thread.join();
}

void WorkerPool::submit(std::function<void()> job)
{
    const std::lock_guard lock(m_mutex);
    // A job that is dropped here goes with the argument, after the lock: its end may submit again.
    if (m_isClosed)
        return;
    if (m_idleCount <= m_waiting.size() && m_threads.size() < m_threadLimit)
        addThread();
    m_waiting.push_back(std::move(job));
    m_wake.notify_one();
}

void WorkerPool::close()
{
    std::deque<std::function<void()>> dropped;
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    dropped.swap(m_waiting);
    m_wake.notify_all();
}

void WorkerPool::addThread()
{
    try {
        m_threads.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // The system is out of threads: those that exist will do the work.
        if (m_threads.empty())
            throw;
    }
}

void WorkerPool::work()
{
    setThreadNiceness(m_niceness);
    std::unique_lock lock(m_mutex);
    while (true) {
        ++m_idleCount;
        m_wake.wait(lock, [this] { return m_isClosed || !m_waiting.empty(); });
        --m_idleCount;
        if (m_isClosed)
            return;
        std::function<void()> job = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
    }
}

} // namespace async
