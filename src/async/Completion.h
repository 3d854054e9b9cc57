#pragma once

#include "async/MainQueue.h"
#include "async/Task.h"
#include "async/WaitPoint.h"

#include <QObject>
#include <list>
#include <memory>
#include <optional>
#include <stop_token>

namespace async {

/// An event that comes once and that any number of tasks wait for; those resume in the order in which they came. The
/// bridge from a callback that is called once. The destructor lets those that still wait throw Cancelled. Thread: main.
class Gate {
public:
    Gate();
    ~Gate();
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    /// Returns at once if the gate is open. Throws Cancelled after a stop request.
    Task<> wait(std::stop_token stop);
    /// Opens the gate for good; further calls are ignored.
    void open();
    /// Whether open() was called. True even before those that waited have resumed.
    bool isOpen() const;

private:
    struct State;
    static Task<> waitFor(std::shared_ptr<State> state, std::stop_token stop);

    std::shared_ptr<State> m_state;
};

/// A Gate that carries a value; T is copyable, each waiter gets a copy. Thread: main.
template <typename T>
class Completion {
public:
    Completion()
        : m_value(std::make_shared<std::optional<T>>())
    {
    }

    /// The value once there is one. Throws Cancelled after a stop request or when the completion is destroyed without
    /// one.
    Task<T> wait(std::stop_token stop) { return waitFor(m_gate.wait(std::move(stop)), m_value); }

    /// Gives the value to all that wait and will wait, who resume on later turns of the main queue. The first value
    /// counts, further ones are ignored.
    void resolve(T value)
    {
        if (m_gate.isOpen())
            return;
        m_value->emplace(std::move(value));
        m_gate.open();
    }

    /// Whether resolve() was called; those that wait may still be on their way.
    bool isResolved() const { return m_gate.isOpen(); }

private:
    static Task<T> waitFor(Task<> opened, std::shared_ptr<std::optional<T>> value)
    {
        co_await opened;
        T copy = **value;
        co_return std::move(copy);
    }

    std::shared_ptr<std::optional<T>> m_value;
    Gate m_gate;
};

/// Waits until \p sender emits \p signal once; its arguments are not passed on. Throws Cancelled after a stop request
/// and when the sender is destroyed first. Sender and caller on the main thread.
template <typename Sender, typename Signal>
Task<> signalOnce(Sender* sender, Signal signal, std::stop_token stop)
{
    const auto point = std::make_shared<WaitPoint>(std::move(stop));
    const QMetaObject::Connection emitted = QObject::connect(sender, signal, sender, [point] { point->settle(); });
    const QMetaObject::Connection destroyed =
        QObject::connect(sender, &QObject::destroyed, [point] { point->abandon(); });
    point->setStopAction([emitted, destroyed] {
        QObject::disconnect(emitted);
        QObject::disconnect(destroyed);
    });
    co_await point->wait();
    QObject::disconnect(emitted);
    QObject::disconnect(destroyed);
}

} // namespace async
