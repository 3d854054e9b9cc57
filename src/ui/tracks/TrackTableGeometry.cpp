#include "ui/tracks/TrackTable.h"

#include "ui/theme/Theme.h"
#include "ui/tracks/ColumnHeader.h"
#include "ui/tracks/TrackListModel.h"

#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

// Where rows stand and how they are painted. The toolkit's own table places rows by its vertical header, which knows
// nothing of folder headers between them.

int TrackTable::verticalOffset() const
{
    return verticalScrollBar()->value();
}

int TrackTable::pinnedHeight() const
{
    return m_layout.runs().isEmpty() ? 0 : Metrics::kFolderStripHeight;
}

int TrackTable::rowAtViewport(double y) const
{
    return y < pinnedHeight() ? -1 : m_layout.rowAt(static_cast<int>(y) + verticalOffset());
}

QRect TrackTable::visualRect(const QModelIndex& index) const
{
    if (!index.isValid() || isColumnHidden(index.column()))
        return {};
    return {columnViewportPosition(index.column()), m_layout.rowTop(index.row()) - verticalOffset(),
            columnWidth(index.column()), m_layout.rowHeight()};
}

QModelIndex TrackTable::indexAt(const QPoint& position) const
{
    const int row = rowAtViewport(position.y());
    const int column = columnAt(position.x());
    return row >= 0 && column >= 0 ? m_model.index(row, column) : QModelIndex();
}

void TrackTable::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    if (!index.isValid() || m_isBeingShown)
        return;
    const int top = m_layout.rowTop(index.row()) - pinnedHeight();
    const int bottom = m_layout.rowTop(index.row()) + m_layout.rowHeight();
    const int height = viewport()->height();
    QScrollBar* bar = verticalScrollBar();
    if (hint == PositionAtTop || (hint == EnsureVisible && top < bar->value()))
        bar->setValue(top);
    else if (hint == PositionAtBottom || (hint == EnsureVisible && bottom > bar->value() + height))
        bar->setValue(bottom - height);
    else if (hint == PositionAtCenter)
        bar->setValue((top + bottom - height) / 2);
}

/// The toolkit scrolls to a current row that changed while the list was hidden; the user left the list where it is.
bool TrackTable::event(QEvent* event)
{
    const QScopedValueRollback showing(m_isBeingShown, event->type() == QEvent::Show);
    return QTableView::event(event);
}

TrackTable::ScrollPlace TrackTable::scrollPlace() const
{
    const int row = m_layout.nearestRow(verticalOffset() + pinnedHeight());
    return {verticalOffset(), row < 0 || row >= m_model.rowCount() ? TrackID() : m_model.track(row).id()};
}

void TrackTable::setScrollPlace(const ScrollPlace& place)
{
    updateGeometries();
    const std::optional<int> row = m_model.rowOf(place.topRow);
    const bool stands = !row || m_layout.nearestRow(place.offset + pinnedHeight()) == *row;
    verticalScrollBar()->setValue(stands ? place.offset : m_layout.rowTop(*row) - pinnedHeight());
}

void TrackTable::updateGeometries()
{
    m_layout.setRowCount(m_model.rowCount());
    const int head = Metrics::kColumnHeadHeight;
    setViewportMargins(0, head, 0, 0);
    const QRect area = viewport()->geometry();
    horizontalHeader()->setGeometry(area.left(), area.top() - head, area.width(), head);
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, m_layout.height() - viewport()->height()));
    horizontalScrollBar()->setRange(0, 0);
    QAbstractItemView::updateGeometries();
}

void TrackTable::scrollContentsBy(int, int)
{
    viewport()->update(); // the pinned header stays, so moving the picture would smear it
    dropWaveformsOutOfView();
}

void TrackTable::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command)
{
    QItemSelection selection;
    const int top = std::min(rect.top(), rect.bottom()) + verticalOffset();
    const int bottom = std::max(rect.top(), rect.bottom()) + verticalOffset();
    if (bottom >= 0 && top < m_layout.height() && m_model.rowCount() > 0)
        selection.select(m_model.index(m_layout.nearestRow(top), 0),
                         m_model.index(m_layout.nearestRow(bottom), m_model.columnCount() - 1));
    selectionModel()->select(selection, command);
}

QRegion TrackTable::visualRegionForSelection(const QItemSelection&) const
{
    return viewport()->rect(); // some dozens of rows are in view, and they are cheap
}

void TrackTable::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const int first = m_layout.nearestRow(event->rect().top() + verticalOffset());
    const int last = m_layout.nearestRow(event->rect().bottom() + verticalOffset());
    lookAtSelection(first, last);
    for (int row = first; row >= 0 && row <= last; ++row) {
        option.state.setFlag(QStyle::State_Selected, m_selected.rows[size_t(row - first)]);
        paintRow(painter, option, row);
    }
    paintFolders(painter);
}

/// Once for all rows of a picture: the selection is a list of runs, and may have very many.
void TrackTable::lookAtSelection(int first, int last)
{
    const QItemSelection selection = selectionModel()->selection();
    m_selected = {std::vector<bool>(size_t(std::max(0, last - first + 1))), !selection.isEmpty(),
                  selection.size() == 1 && selection.first().height() == 1};
    for (const QItemSelectionRange& range : selection) {
        for (int row = std::max(first, range.top()); row <= std::min(last, range.bottom()); ++row)
            m_selected.rows[size_t(row - first)] = true;
    }
}

void TrackTable::paintRow(QPainter& painter, QStyleOptionViewItem& option, int row) const
{
    for (int column = 0; column < m_model.columnCount(); ++column) {
        if (isColumnHidden(column))
            continue;
        const QModelIndex index = m_model.index(row, column);
        option.rect = visualRect(index);
        itemDelegate()->paint(&painter, option, index);
    }
}

void TrackTable::paintFolders(QPainter& painter) const
{
    const QList<FolderRun>& runs = m_layout.runs();
    const int offset = verticalOffset();
    const int pinned = m_layout.runAt(offset);
    if (pinned < 0)
        return;
    constexpr int kHeight = Metrics::kFolderStripHeight;
    int pinnedTop = 0;
    for (int run = pinned + 1; run < runs.size(); ++run) {
        const int top = m_layout.headerTop(run) - offset;
        if (top >= viewport()->height())
            break;
        m_folderHeader.paint(painter, {0, top, viewport()->width(), kHeight}, runs[run]);
        if (run == pinned + 1)
            pinnedTop = std::min(0, top - kHeight); // pushed out by the next one
    }
    painter.setClipRect(0, 0, viewport()->width(), kHeight + pinnedTop);
    m_folderHeader.paint(painter, {0, pinnedTop, viewport()->width(), kHeight}, runs[pinned]);
}
