#include "async/MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <deque>
#include <mutex>
#include <thread>

namespace async::MainQueue {

namespace {

// Static initialisation runs on the main thread, before any other can exist.
const std::thread::id mainThread = std::this_thread::get_id();

struct Queue {
    std::mutex mutex;
    std::deque<std::function<void()>> waiting;
    QObject* receiver = nullptr; // lives as long as the application object
    bool isWakePosted = false;   // an event that will run the first function is on its way
    bool isClosed = false;       // the application object is gone and no new one has come

    // Called with the lock held.
    void wakeIfNeeded()
    {
        if (!receiver || isWakePosted || waiting.empty())
            return;
        isWakePosted = true;
        QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
    }
};

// Never destroyed: threads may post while static objects are being torn down.
Queue& queue()
{
    static Queue* const shared = new Queue;
    return *shared;
}

std::function<void()> takeFirst()
{
    Queue& shared = queue();
    const std::lock_guard lock(shared.mutex);
    if (shared.waiting.empty())
        return {};
    std::function<void()> first = std::move(shared.waiting.front());
    shared.waiting.pop_front();
    return first;
}

class Receiver : public QObject {
protected:
    // Runs one function and asks for the next event before that: so a nested loop of the toolkit (a menu, a drag) goes
    // on with the rest, and input comes between two functions.
    void customEvent(QEvent*) override
    {
        const std::function<void()> function = takeFirst();
        {
            const std::lock_guard lock(queue().mutex);
            queue().isWakePosted = false;
            queue().wakeIfNeeded();
        }
        if (function)
            function();
    }
};

void close()
{
    std::deque<std::function<void()>> dropped;
    QObject* receiver = nullptr;
    Queue& shared = queue();
    {
        const std::lock_guard lock(shared.mutex);
        dropped.swap(shared.waiting);
        receiver = std::exchange(shared.receiver, nullptr);
        shared.isWakePosted = false;
        shared.isClosed = true;
    }
    delete receiver;
}

void open()
{
    Queue& shared = queue();
    const std::lock_guard lock(shared.mutex);
    shared.isClosed = false;
    shared.receiver = new Receiver;
    shared.wakeIfNeeded();
    qAddPostRoutine(close);
}

const bool isRegistered = (qAddPreRoutine(open), true);

} // namespace

void post(std::function<void()> function)
{
    Queue& shared = queue();
    const std::lock_guard lock(shared.mutex);
    // What is dropped is destroyed with the argument, after the lock: its destructor may post again.
    if (shared.isClosed)
        return;
    shared.waiting.push_back(std::move(function));
    shared.wakeIfNeeded();
}

void drain()
{
    VELMORA_ASSERT_MAIN_THREAD();
    while (const std::function<void()> function = takeFirst())
        function();
}

bool isMainThread()
{
    return std::this_thread::get_id() == mainThread;
}

} // namespace async::MainQueue
