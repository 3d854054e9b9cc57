#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskSlot.h"

#include <QString>

#include <optional>

/// Whether power is low or the machine is hot, for those who ask often: answers with what was seen last and looks again
/// in the background, at most every ten seconds and only when asked. Thread: main.
class ResourceWatch {
public:
    /// \param root the folder that the kernel tells in; see PowerState.
    ResourceWatch(async::Clock& clock, async::Executor& executor, QString root = QStringLiteral("/sys"));

    /// False until the first look has ended.
    bool areConstrained();

private:
    async::Task<> look(std::stop_token stop);

    async::Clock& m_clock;
    async::Executor& m_executor;
    QString m_root;
    bool m_areConstrained = false;
    std::optional<async::Duration> m_lookedAt;
    async::TaskSlot m_look;
};
