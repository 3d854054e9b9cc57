#include "async/TaskLine.h"

#include "async/MainQueue.h"

#include <algorithm>

namespace async {

TaskLine::TaskLine(int limit)
    : m_limit(size_t(std::max(limit, 1)))
{
    Q_ASSERT(limit >= 1);
}

TaskLine::Handle TaskLine::add(TaskFactory factory, Place place)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const Handle handle = ++m_lastHandle;
    m_waiting.insert(place == Place::Front ? m_waiting.begin() : m_waiting.end(), Entry{handle, std::move(factory)});
    startWaiting();
    return handle;
}

void TaskLine::cancel(Handle handle)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const auto isWanted = [handle](const auto& entry) { return entry.handle == handle; };
    if (const auto entry = std::ranges::find_if(m_waiting, isWanted); entry != m_waiting.end()) {
        // Taken out before it is destroyed: what a factory holds may cancel others of this line.
        const Entry dropped = std::move(*entry);
        m_waiting.erase(entry);
    } else if (const auto running = std::ranges::find_if(m_running, isWanted); running != m_running.end()) {
        const std::shared_ptr<TaskRun> run = running->run;
        run->requestStop();
    }
}

void TaskLine::cancelAll()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const std::shared_ptr<TaskLine> self = shared_from_this();
    const std::deque<Entry> dropped = std::exchange(m_waiting, {});
    const std::vector<Running> stopped = m_running;
    for (const Running& running : stopped)
        running.run->requestStop();
}

int TaskLine::count() const
{
    const auto isActive = [](const Running& running) { return running.run->isActive(); };
    return int(m_waiting.size()) + int(std::ranges::count_if(m_running, isActive));
}

void TaskLine::startWaiting()
{
    // Tasks that end at once call this again from inside; the outer call goes on, so that a long line needs no deep
    // stack.
    if (m_isStarting)
        return;
    const std::shared_ptr<TaskLine> self = shared_from_this();
    m_isStarting = true;
    while (m_running.size() < m_limit && !m_waiting.empty())
        startFirst();
    m_isStarting = false;
}

void TaskLine::startFirst()
{
    Entry entry = std::move(m_waiting.front());
    m_waiting.pop_front();
    const auto run = std::make_shared<TaskRun>(std::move(entry.factory));
    m_running.push_back(Running{entry.handle, run});
    run->start([line = shared_from_this(), handle = entry.handle] { line->remove(handle); });
}

void TaskLine::remove(Handle handle)
{
    std::erase_if(m_running, [handle](const Running& running) { return running.handle == handle; });
    startWaiting();
}

} // namespace async
