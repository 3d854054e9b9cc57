#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"
#include "core/model/WorkspaceStatus.h"

#include <QMap>
#include <QUuid>

#include <initializer_list>

class QVariant;
class Workspace;

/// The one message of the status line; a later one replaces an earlier one and starts its own clock. Where nothing
/// new is to be said, a warning stands there as long as what it warns of lasts. Owned by the store. Thread: main.
class StatusLine {
public:
    static constexpr double kDefaultDuration = 3.6; ///< seconds

    /// \param workspace shows the message; both outlive the line.
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

    /// Shows a warning whenever nothing else is shown, until it is let go. \param about tells one from another; a later
    /// text about the same takes the place of the earlier one. \param text final.
    void hold(const QString& about, const QString& text);
    /// Ends a warning; nothing happens for one that is not held.
    void letGo(const QString& about);

private:
    void showHeld();
    async::Task<> clearLater(QUuid id, double duration, std::stop_token stop);

    Workspace& m_workspace;
    async::Clock& m_clock;
    QMap<QString, QString> m_held; ///< texts by what they are about
    QUuid m_shownHeld;             ///< the status that is a held warning
    async::TaskSlot m_clearTask;
};
