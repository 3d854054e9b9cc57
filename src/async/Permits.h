#pragma once

#include "async/Task.h"

#include <memory>
#include <stop_token>

namespace async {

/// A fixed number of permits, handed out in the order in which they were asked for. Thread: main.
class Permits {
public:
    /// \param limit permits that can be held at once, at least 1.
    explicit Permits(int limit);
    /// What still waits throws Cancelled.
    ~Permits();
    Permits(const Permits&) = delete;
    Permits& operator=(const Permits&) = delete;

    /// Takes a permit, at once if one is free, else when those before have had theirs. Throws Cancelled after a stop
    /// request, and then holds none: a permit that was on its way goes to the next in line.
    Task<> acquire(std::stop_token stop);
    /// Gives one back: to the first that waits, with the number of held ones unchanged; else that number falls, not
    /// below 0.
    void release();
    /// Permits that are held, those on their way to a waiter included.
    int active() const;
    /// Tasks that stand in line and have no permit on its way to them.
    int waiting() const;

private:
    struct State;
    static Task<> acquireFrom(std::shared_ptr<State> state, std::stop_token stop);

    std::shared_ptr<State> m_state;
};

} // namespace async
