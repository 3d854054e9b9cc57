#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace async {

/// Worker threads of one nice value, made on demand and kept until the end, with one queue in order of submission.
class WorkerPool {
public:
    /// \param niceness    nice value of its threads. \param threadLimit threads at most, at least 1.
    WorkerPool(int niceness, int threadLimit);
    /// Waits for running jobs to finish and drops the waiting ones.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// Queues a job; drops it after close(). Throws std::system_error when not even a first thread can be made. Thread:
    /// any.
    void submit(std::function<void()> job);
    /// Drops the waiting jobs and takes no more. Thread: any.
    void close();

private:
    void work();
    void addThread();

    const int m_niceness;
    const size_t m_threadLimit;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_waiting;
    std::vector<std::thread> m_threads;
    size_t m_idleCount = 0;
    bool m_isClosed = false;
};

} // namespace async
