#include "ui/tracks/SelectionSync.h"

#include "core/library/workspace/Workspace.h"
#include "ui/context/DashboardActions.h"
#include "ui/tracks/TrackListModel.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QScopedValueRollback>

namespace {
constexpr qsizetype kManyRows = 500; // chosen: fewer are carried along within a millisecond
}

SelectionSync::SelectionSync(QAbstractItemView& view, TrackListModel& model, Workspace& workspace,
                             DashboardActions& actions)
    : QObject(&view)
    , m_view(view)
    , m_model(model)
    , m_workspace(workspace)
    , m_actions(actions)
{
    QItemSelectionModel* selection = view.selectionModel();
    connect(selection, &QItemSelectionModel::selectionChanged, this, &SelectionSync::viewChanged);
    connect(selection, &QItemSelectionModel::currentRowChanged, this, &SelectionSync::viewChanged);
    connect(&model, &TrackListModel::structureAboutToChange, this, &SelectionSync::liftLargeSelection);
    connect(&workspace, &Workspace::selectionChanged, this, &SelectionSync::workspaceChanged);
}

void SelectionSync::setActive(bool active)
{
    if (!active)
        flush();
    m_isActive = active;
    if (active)
        take();
}

void SelectionSync::viewChanged()
{
    if (m_isTaking || !m_isActive || m_isPending)
        return;
    m_isPending = true;
    QMetaObject::invokeMethod(this, &SelectionSync::flush, Qt::QueuedConnection);
}

void SelectionSync::flush()
{
    if (!std::exchange(m_isPending, false) || !m_isActive)
        return;
    m_shown = selectedIDs(m_view, m_model);
    m_actions.select(m_shown, focusedID(m_view, m_model));
}

void SelectionSync::workspaceChanged()
{
    m_isPending = false; // whoever wrote the workspace came later than the user's click
    if (m_isActive)
        take();
}

void SelectionSync::beginRows()
{
    flush();
    m_isTaking = true;
}

/// The toolkit carries each selected row along through every move and removal. Many are laid down anew instead, by
/// endRows().
void SelectionSync::liftLargeSelection()
{
    if (m_isTaking && m_isActive && m_shown.size() > kManyRows)
        m_view.selectionModel()->select(QItemSelection(), QItemSelectionModel::Clear);
}

void SelectionSync::endRows(bool structure)
{
    m_isTaking = false;
    if (!structure || !m_isActive)
        return;
    m_shown = selectedIDs(m_view, m_model); // rows may have left
    take();
}

void SelectionSync::take()
{
    const QScopedValueRollback<bool> guard(m_isTaking, true);
    const QSet<TrackID> ids = m_workspace.selectedIDs();
    if (ids != m_shown) {
        applyRows(ids);
        m_shown = ids;
    }
    applyFocus(m_workspace.selectedID());
}

void SelectionSync::applyRows(const QSet<TrackID>& ids)
{
    QItemSelection selection;
    const int lastColumn = m_model.columnCount() - 1;
    const QList<Track>& rows = m_model.rows();
    qsizetype found = 0;
    for (int row = 0; row < rows.size() && found < ids.size(); ++row) {
        if (!ids.contains(rows[row].id()))
            continue;
        const int first = row;
        while (row + 1 < rows.size() && ids.contains(rows[row + 1].id()))
            ++row;
        found += row - first + 1;
        selection.append(QItemSelectionRange(m_model.index(first, 0), m_model.index(row, lastColumn)));
    }
    m_view.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void SelectionSync::applyFocus(const std::optional<TrackID>& focused)
{
    if (focused == focusedID(m_view, m_model))
        return;
    const std::optional<int> row = focused ? m_model.rowOf(*focused) : std::nullopt;
    QItemSelectionModel* selection = m_view.selectionModel();
    if (!row) {
        selection->clearCurrentIndex();
        return;
    }
    selection->setCurrentIndex(m_model.index(*row, 0), QItemSelectionModel::NoUpdate);
    m_view.scrollTo(m_model.index(*row, 0));
}

QSet<TrackID> SelectionSync::selectedIDs(const QAbstractItemView& view, const TrackListModel& model)
{
    QSet<TrackID> ids;
    for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
        ids.reserve(ids.size() + range.height());
        for (int row = range.top(); row <= range.bottom(); ++row)
            ids.insert(model.track(row).id());
    }
    return ids;
}

std::optional<TrackID> SelectionSync::focusedID(const QAbstractItemView& view, const TrackListModel& model)
{
    const QModelIndex current = view.currentIndex();
    return current.isValid() ? std::optional(model.track(current.row()).id()) : std::nullopt;
}
