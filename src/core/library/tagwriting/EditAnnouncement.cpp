#include "core/library/tagwriting/EditAnnouncement.h"

#include "core/library/status/StatusLine.h"

#include <QVariant>

void EditAnnouncement::showWriting(StatusLine& status) const
{
    show(status, writing, rows, WorkspaceStatus::Tone::Neutral);
}

void EditAnnouncement::showWritten(StatusLine& status, int notWritten) const
{
    if (notWritten < rows)
        show(status, written, rows - notWritten, WorkspaceStatus::Tone::Success);
    else
        status.showCounted(QStringLiteral("В файлы не записано: %d"), {notWritten}, StatusIcon::Warning,
                           WorkspaceStatus::Tone::Warning);
}

void EditAnnouncement::show(StatusLine& status, const QString& text, int count, WorkspaceStatus::Tone tone) const
{
    if (value)
        status.showCounted(text, {*value, count}, icon, tone);
    else
        status.showCounted(text, {count}, icon, tone);
}
