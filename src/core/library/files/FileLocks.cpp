#include "core/library/files/FileLocks.h"

#include "async/Completion.h"
#include "async/MainQueue.h"
#include "platform/FileURL.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <deque>

/// Shared with the tasks, which may come to their end after the locks.
struct FileLocks::State {
    using Waiter = std::shared_ptr<async::Gate>;

    QSet<QString> lockedPaths;
    QHash<QString, std::deque<Waiter>> waiters;

    void release(const QString& path)
    {
        const auto waiting = waiters.find(path);
        if (waiting == waiters.end()) {
            lockedPaths.remove(path);
            return;
        }
        const Waiter next = waiting->front();
        waiting->pop_front();
        if (waiting->empty())
            waiters.erase(waiting);
        next->open();
    }

    /// A waiter gave up. If the path was just handed to it, it goes on to the next one.
    void leave(const QString& path, const Waiter& waiter)
    {
        if (waiter->isOpen()) {
            release(path);
            return;
        }
        const auto waiting = waiters.find(path);
        if (waiting == waiters.end())
            return;
        std::erase(*waiting, waiter);
        if (waiting->empty())
            waiters.erase(waiting);
    }
};

class FileLocks::Held {
public:
    Held(std::shared_ptr<State> state, const QString& path)
        : m_state(std::move(state))
        , m_path(path)
    {
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { m_state->release(m_path); }

private:
    std::shared_ptr<State> m_state;
    QString m_path;
};

FileLocks::FileLocks()
    : m_state(std::make_shared<State>())
{
}

FileLocks::~FileLocks() = default;

async::Task<> FileLocks::acquire(QString path, std::stop_token stop)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const std::shared_ptr<State> state = m_state;
    if (!state->lockedPaths.contains(path)) {
        state->lockedPaths.insert(path);
        co_return;
    }
    const State::Waiter waiter = std::make_shared<async::Gate>();
    state->waiters[path].push_back(waiter);
    try {
        co_await waiter->wait(stop);
    } catch (...) {
        state->leave(path, waiter);
        throw;
    }
}

void FileLocks::release(const QString& path)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_state->release(path);
}

async::Task<FileLocks::HeldPath> FileLocks::hold(QUrl url, std::stop_token stop)
{
    const std::shared_ptr<State> state = m_state;
    const QString path = FileURL::standardizedPath(url);
    co_await acquire(path, stop);
    co_return std::make_shared<Held>(state, path);
}
