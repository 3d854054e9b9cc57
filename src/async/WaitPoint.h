#pragma once

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace async {

/// The place where one coroutine waits for one event or for a stop, whichever is first; the building block of every
/// awaiter. Made by std::make_shared and awaited once (`co_await point->wait()`). Resumption is always posted to the
/// main queue. After a stop request the wait throws Cancelled, even when the event came first. Thread: main, but the
/// stop may be requested on any thread.
class WaitPoint : public std::enable_shared_from_this<WaitPoint> {
public:
    /// \param stop may be requested already: the wait then throws Cancelled on the queue's next turn
    explicit WaitPoint(std::stop_token stop);
    WaitPoint(const WaitPoint&) = delete;
    WaitPoint& operator=(const WaitPoint&) = delete;

    /// What takes the waiter out of the event's books when a stop ends the wait; runs inside request_stop() if that is
    /// called on the main thread. Set before the wait begins.
    void setStopAction(std::function<void()> action);
    /// The event has come. Only the first call of settle() or abandon() counts.
    void settle();
    /// The event will never come: the wait throws Cancelled.
    void abandon();
    /// Whether the wait will throw Cancelled, or has.
    bool isStopRequested() const { return m_stop.stop_requested(); }

    /// What is awaited, once, while the caller holds the point. Trivial to copy, because compilers do copy awaiters.
    struct Awaiter {
        WaitPoint* point;

        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiter) const { point->beginWaiting(waiter); }
        /// Throws Cancelled after a stop request or abandon().
        void await_resume() const { point->endWaiting(); }
    };
    /// To be awaited on the main thread. The awaiter keeps no share of the point: the caller's own pointer does.
    Awaiter wait() { return Awaiter{this}; }

private:
    struct StopHook {
        std::weak_ptr<WaitPoint> point;
        void operator()() const noexcept;
    };

    void beginWaiting(std::coroutine_handle<> waiter);
    void endWaiting();
    void stopWaiting();
    void postResumption();

    std::stop_token m_stop;
    std::function<void()> m_stopAction;
    std::optional<std::stop_callback<StopHook>> m_stopCallback;
    std::coroutine_handle<> m_waiter;
    bool m_isSettled = false;
    bool m_isAbandoned = false;
};

} // namespace async
