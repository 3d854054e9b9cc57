#pragma once

#include <QString>

/// How much room the window takes. Raw values "compact" and "full" stand in the preference `workspaceLayout`.
enum class WorkspaceLayout { Compact, Full };

/// The text that the preference keeps.
inline QString rawValue(WorkspaceLayout layout)
{
    return layout == WorkspaceLayout::Compact ? QStringLiteral("compact") : QStringLiteral("full");
}

/// Full for an unknown value.
inline WorkspaceLayout workspaceLayoutFromRawValue(const QString& raw)
{
    return raw == QLatin1StringView("compact") ? WorkspaceLayout::Compact : WorkspaceLayout::Full;
}
