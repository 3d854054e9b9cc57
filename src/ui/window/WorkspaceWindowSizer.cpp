#include "ui/window/WorkspaceWindowSizer.h"

#include "core/model/WorkspaceLayout.h"
#include "platform/Preferences.h"

#include <QWidget>

WorkspaceWindowSizer::WorkspaceWindowSizer(QWidget& window, Preferences& preferences)
    : m_window(window)
    , m_preferences(preferences)
{
    applyMinimum();
    const QByteArray geometry = preferences.windowGeometry.get();
    if (geometry.isEmpty() || !window.restoreGeometry(geometry))
        window.resize(isCompact() ? kCompactDefault : kFullDefault);
    connect(&preferences, &Preferences::changed, this, [this](const QString& key) {
        if (key == m_preferences.workspaceLayout.key())
            layoutChanged();
    });
}

bool WorkspaceWindowSizer::isCompact() const
{
    return workspaceLayoutFromRawValue(m_preferences.workspaceLayout.get()) == WorkspaceLayout::Compact;
}

void WorkspaceWindowSizer::applyMinimum()
{
    m_window.setMinimumSize(isCompact() ? kCompactMinimum : kFullMinimum);
}

void WorkspaceWindowSizer::layoutChanged()
{
    applyMinimum();
    if (!m_window.isMaximized() && !m_window.isFullScreen())
        m_window.resize(isCompact() ? kCompactDefault : kFullDefault);
}

void WorkspaceWindowSizer::remember()
{
    m_preferences.windowGeometry.set(m_window.saveGeometry());
}
