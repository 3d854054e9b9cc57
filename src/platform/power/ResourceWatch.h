#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskSlot.h"
#include "platform/power/PowerWatch.h"

#include <QString>

/// Looks in the background at power and heat, at once and then every ten seconds for as long as it watches: the system
/// tells of neither. Thread: main.
class ResourceWatch : public PowerWatch {
public:
    /// \param clock, executor live longer than the watch. \param root the folder that the kernel tells in; see
    ///     PowerState.
    ResourceWatch(async::Clock& clock, async::Executor& executor, QString root = QStringLiteral("/sys"));

    void setWatching(bool isWatching) override;

private:
    async::Task<> look(std::stop_token stop);

    async::Clock& m_clock;
    async::Executor& m_executor;
    QString m_root;
    bool m_isConstrained = false;
    async::TaskSlot m_look;
};
