#include "core/library/status/StatusLine.h"

#include "async/MainQueue.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Localization.h"

StatusLine::StatusLine(Workspace& workspace, async::Clock& clock)
    : m_workspace(workspace)
    , m_clock(clock)
{
}

void StatusLine::showStatus(const QString& message, StatusIcon icon, WorkspaceStatus::Tone tone, double duration)
{
    showText(VelmoraLocalization::string(message), icon, tone, duration);
}

void StatusLine::showCounted(const QString& message, std::initializer_list<QVariant> arguments, StatusIcon icon,
                             WorkspaceStatus::Tone tone, double duration)
{
    showText(VelmoraLocalization::format(message, arguments), icon, tone, duration);
}

void StatusLine::showText(const QString& text, StatusIcon icon, WorkspaceStatus::Tone tone, double duration)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QUuid id = freshID();
    m_workspace.setWorkspaceStatus(WorkspaceStatus{id, icon, text, tone});
    m_clearTask.start([this, id, duration](std::stop_token stop) { return clearLater(id, duration, stop); });
}

async::Task<> StatusLine::clearLater(QUuid id, double duration, std::stop_token stop)
{
    co_await m_clock.sleep(async::seconds(duration), stop);
    const std::optional<WorkspaceStatus>& status = m_workspace.workspaceStatus();
    if (status && status->id == id)
        showHeld();
}

void StatusLine::hold(const QString& about, const QString& text)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_held.value(about) == text)
        return;
    m_held.insert(about, text);
    const std::optional<WorkspaceStatus>& status = m_workspace.workspaceStatus();
    if (!status || status->id == m_shownHeld)
        showHeld();
}

void StatusLine::letGo(const QString& about)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const std::optional<WorkspaceStatus>& status = m_workspace.workspaceStatus();
    if (m_held.remove(about) > 0 && status && status->id == m_shownHeld)
        showHeld();
}

/// A warning, or nothing where there is none.
void StatusLine::showHeld()
{
    if (m_held.isEmpty()) {
        m_workspace.setWorkspaceStatus(std::nullopt);
        return;
    }
    m_shownHeld = freshID();
    m_workspace.setWorkspaceStatus(
        WorkspaceStatus{m_shownHeld, StatusIcon::Warning, m_held.first(), WorkspaceStatus::Tone::Warning});
}
