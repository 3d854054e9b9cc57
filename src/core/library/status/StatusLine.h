#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"
#include "core/model/WorkspaceStatus.h"

#include <initializer_list>

class QVariant;
class Workspace;

/// The one message of the status line; a later one replaces an earlier one and starts its own clock.
class StatusLine {
public:
    static constexpr double kDefaultDuration = 3.6; ///< seconds

    StatusLine(Workspace& workspace, async::Clock& clock);

    /// Shows a message for a time. \param message Russian key, localised here. \param duration
    /// seconds.
    void showStatus(const QString& message, StatusIcon icon, WorkspaceStatus::Tone tone,
                    double duration = kDefaultDuration);
    /// The same for a text with placeholders.
    void showCounted(const QString& message, std::initializer_list<QVariant> arguments, StatusIcon icon,
                     WorkspaceStatus::Tone tone, double duration = kDefaultDuration);

    /// The same for a text that is final already.
    void showText(const QString& text, StatusIcon icon, WorkspaceStatus::Tone tone, double duration = kDefaultDuration);

private:
    async::Task<> clearLater(QUuid id, double duration, std::stop_token stop);

    Workspace& m_workspace;
    async::Clock& m_clock;
    async::TaskSlot m_clearTask;
};
