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
    /// As finish().
    ~EngineThread() { finish(); }
    EngineThread(const EngineThread&) = delete;
    EngineThread& operator=(const EngineThread&) = delete;

    /// Starts the thread; what was posted before is done first. Called once.
    void start(Turn turn);
    /// Done on the thread, in the order of posting, before its next turn. What \p task throws is logged. Dropped
    /// after finish(). Thread: any.
    void post(std::function<void()> task);
    /// Takes no more tasks, lets the thread do what was posted and waits for its end. Not to be called on the thread
    /// itself.
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
