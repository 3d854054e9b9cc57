#include "ui/tracks/RowSelection.h"

void RowSelection::select(const QItemSelection& wanted, SelectionFlags command)
{
    constexpr qsizetype kManyRuns = 256; // chosen: the square of it costs no millisecond
    const bool replaces = command.testFlag(Clear) && !wanted.isEmpty() && hasSelection();
    if (replaces && std::max(wanted.size(), selection().size()) > kManyRuns)
        QItemSelectionModel::select(QItemSelection(), Clear);
    QItemSelectionModel::select(wanted, command);
}
