#pragma once

#include "core/model/WorkspaceStatus.h"

#include <optional>

class StatusLine;

/// What the status line says of an edit: first that it is on its way, then that the files hold it.
struct EditAnnouncement {
    QString writing; ///< localisation key, of the value where there is one and a count
    QString written; ///< likewise
    StatusIcon icon = StatusIcon::Tag;
    int rows = 0; ///< that have the value when all is done; those that had it before count too
    std::optional<QString> value = {};

    /// To be called before the first file is written.
    void showWriting(StatusLine& status) const;
    /// \param notWritten rows whose files do not hold it; why has a message of its own.
    void showWritten(StatusLine& status, int notWritten) const;

private:
    void show(StatusLine& status, const QString& text, int count, WorkspaceStatus::Tone tone) const;
};
