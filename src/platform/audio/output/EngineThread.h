#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// One thread that does what it is told in order and, between, takes turns of its own.
class EngineThread {
public:
    using Seconds = std::chrono::duration<double>;
    /// One turn of the thread's own work. \return how long it may rest if nothing is asked of it.
    using Turn = std::function<Seconds()>;

    EngineThread() = default;
    /// Does what was posted and ends.
    ~EngineThread() { finish(); }
    EngineThread(const EngineThread&) = delete;
    EngineThread& operator=(const EngineThread&) = delete;

    void start(Turn turn);
    /// What \p task throws is logged. Dropped after finish(). Thread: any.
    void post(std::function<void()> task);
    void finish();

private:
    void run(const Turn& turn);
    /// What was posted so far; waits for it at most \p rest.
    std::deque<std::function<void()>> take(Seconds rest);

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_tasks;
    bool m_isFinishing = false;
    std::thread m_thread;
};
