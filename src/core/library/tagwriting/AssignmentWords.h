#pragma once

#include "core/library/tagwriting/AssignmentPlan.h"
#include "core/model/WorkspaceStatus.h"

/// What the status line and the undo menu call the assignment of one field: localisation keys.
struct AssignmentWords {
    QString assigning; ///< value and count
    QString assigned;  ///< value and count
    QString clearing;  ///< count
    QString cleared;   ///< count
    QString alreadyEmpty;
    QString assignAction;
    QString clearAction;
    StatusIcon icon = StatusIcon::Tag;

    /// The entry of a field; it lives as long as the program.
    static const AssignmentWords& of(AssignedField field);
};
