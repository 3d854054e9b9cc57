#include "core/library/tagwriting/StepAnnouncement.h"

#include "core/library/status/StatusLine.h"
#include "platform/Localization.h"

#include <QVariant>

using Tone = WorkspaceStatus::Tone;

void StepAnnouncement::showBegun(StatusLine& status) const
{
    const bool isBack = direction == Direction::Back;
    status.showCounted(isBack ? QStringLiteral("Отменяем: %@") : QStringLiteral("Повторяем: %@"),
                       {VelmoraLocalization::string(actionName)}, isBack ? StatusIcon::Undo : StatusIcon::Redo,
                       Tone::Neutral);
}

void StepAnnouncement::showEnded(StatusLine& status, qsizetype leftAlone, qsizetype notWritten) const
{
    const bool isBack = direction == Direction::Back;
    const StatusIcon icon = isBack ? StatusIcon::Undo : StatusIcon::Redo;
    const QString name = VelmoraLocalization::string(actionName);
    if (notWritten > 0)
        status.showCounted(QStringLiteral("В файлы не записано: %d"), {static_cast<int>(notWritten)},
                           StatusIcon::Warning, Tone::Warning);
    else if (leftAlone > 0)
        status.showCounted(isBack ? QStringLiteral("Отменено: %@ · изменены с тех пор и не тронуты: %d")
                                  : QStringLiteral("Повторено: %@ · изменены с тех пор и не тронуты: %d"),
                           {name, static_cast<int>(leftAlone)}, icon, Tone::Warning);
    else
        status.showCounted(isBack ? QStringLiteral("Отменено: %@") : QStringLiteral("Повторено: %@"), {name}, icon,
                           Tone::Success);
}
