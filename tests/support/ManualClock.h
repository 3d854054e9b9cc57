#pragma once

#include "async/Clock.h"

#include <map>
#include <optional>

/// A clock that stands still until it is told to move. Thread: main.
class ManualClock final : public async::Clock {
public:
    async::Duration now() const override { return m_now; }

    /// Moves on by \p duration: fires the deadlines on the way in their order, each at its own time, and drains the
    /// main queue before the first, between two and after the last.
    void advance(async::Duration duration);
    /// Time left to the earliest deadline; nothing when nobody sleeps.
    std::optional<async::Duration> nextDeadline() const;
    /// Number of sleepers.
    int pendingCount() const { return int(m_deadlines.size()); }

protected:
    quint64 schedule(async::Duration deadline, std::function<void()> fire) override;
    void forget(quint64 handle) override;

private:
    using Key = std::pair<async::Duration, quint64>;

    std::map<Key, std::function<void()>> m_deadlines;
    // Not zero, so that no test relies on time beginning there.
    async::Duration m_now = std::chrono::hours(1);
    quint64 m_lastHandle = 0;
};
