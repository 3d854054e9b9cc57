#include "ui/tracks/TrackTable.h"

#include "ui/theme/Theme.h"
#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/tracks/ColumnHeader.h"
#include "ui/tracks/TrackListModel.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <cmath>

TrackTable::TrackTable(const WindowContext& context, TrackListModel& model, QWidget* parent)
    : QTableView(parent)
    , m_context(context)
    , m_model(model)
    , m_folderHeader(context, model)
{
    setModel(&model);
    setItemDelegate(new TrackDelegate(
        context, [this](const QModelIndex& index) { return stateOf(index); }, this));
    setHorizontalHeader(new ColumnHeader(context.theme, this));
    verticalHeader()->setVisible(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(Metrics::kTableRowMinimum);
    setDensity(1);
    setShowGrid(false);
    setWordWrap(false);
    setFrameShape(QFrame::NoFrame);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    connect(&context.thumbnails, &ThumbnailCache::ready, viewport(), qOverload<>(&QWidget::update));
    connect(&context.theme, &Theme::changed, viewport(), qOverload<>(&QWidget::update));
}

void TrackTable::setDensity(double density)
{
    const int wanted = static_cast<int>(std::lround(Metrics::kTableRowHeight * density));
    const int height = std::max(wanted, Metrics::kTableRowMinimum);
    m_layout.setRowHeight(height);
    verticalHeader()->setDefaultSectionSize(height); // nothing is placed by it, but assistive tools may ask
    verticalScrollBar()->setSingleStep(height);
    updateGeometries();
    viewport()->update();
}

void TrackTable::setFolders(const QList<FolderRun>& runs)
{
    if (runs == m_layout.runs())
        return;
    m_layout.setRuns(runs);
    updateGeometries();
    viewport()->update();
}

void TrackTable::rowsChanged()
{
    m_folderHeader.forget();
}

void TrackTable::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    applyWidths();
}

void TrackTable::applyWidths()
{
    const std::vector<int> widths = TrackColumns::widths(m_model.columns(), viewport()->width());
    m_firstColumn = -1;
    for (size_t i = 0; i < widths.size(); ++i) {
        const int column = static_cast<int>(i);
        setColumnHidden(column, widths[i] == 0);
        if (widths[i] == 0)
            continue;
        setColumnWidth(column, widths[i]);
        m_lastColumn = column;
        if (m_firstColumn < 0)
            m_firstColumn = column;
    }
}

void TrackTable::beginRows()
{
    const int row = verticalOffset() > 0 ? m_layout.nearestRow(verticalOffset() + pinnedHeight()) : -1;
    m_anchor = row >= 0 && row < m_model.rowCount() ? m_model.index(row, 0) : QModelIndex();
    m_anchorOffset = m_anchor.isValid() ? m_layout.rowTop(row) - verticalOffset() : 0;
}

void TrackTable::endRows()
{
    const QModelIndex anchor = std::exchange(m_anchor, QPersistentModelIndex());
    updateGeometries();
    if (anchor.isValid())
        verticalScrollBar()->setValue(m_layout.rowTop(anchor.row()) - m_anchorOffset);
}

RowState TrackTable::stateOf(const QModelIndex& index) const
{
    RowState state;
    state.isHovered = index.row() == m_hoveredRow;
    state.isFirstColumn = index.column() == m_firstColumn;
    state.isLastColumn = index.column() == m_lastColumn;
    if (!hasFocus() || currentIndex().row() != index.row())
        return state;
    // One selected row is its own mark; among several, or away from them, the focus needs one.
    const QItemSelection selection = selectionModel()->selection();
    const bool isOnlyRow = selection.size() == 1 && selection.first().height() == 1 && selection.contains(index);
    state.hasFocusRing = m_isKeyboardUsed || (!selection.isEmpty() && !isOnlyRow);
    return state;
}

QModelIndex TrackTable::heartAt(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    return index.isValid() && m_model.columnAt(index.column()) == TrackColumn::Heart ? index : QModelIndex();
}

void TrackTable::mousePressEvent(QMouseEvent* event)
{
    m_isKeyboardUsed = false;
    m_pressedHeart = event->button() == Qt::LeftButton ? heartAt(event->position().toPoint()) : QModelIndex();
    if (!m_pressedHeart.isValid())
        QTableView::mousePressEvent(event);
}

void TrackTable::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_pressedHeart.isValid()) {
        QTableView::mouseReleaseEvent(event);
        return;
    }
    const QModelIndex pressed = std::exchange(m_pressedHeart, QPersistentModelIndex());
    if (heartAt(event->position().toPoint()) == pressed)
        emit heartClicked(m_model.track(pressed.row()).id());
}

void TrackTable::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (heartAt(event->position().toPoint()).isValid())
        mousePressEvent(event); // two quick clicks are two toggles
    else
        QTableView::mouseDoubleClickEvent(event);
}

void TrackTable::mouseMoveEvent(QMouseEvent* event)
{
    setHoveredRow(rowAtViewport(event->position().y()));
    if (!m_pressedHeart.isValid())
        QTableView::mouseMoveEvent(event);
}

void TrackTable::wheelEvent(QWheelEvent* event)
{
    QTableView::wheelEvent(event);
    setHoveredRow(rowAtViewport(event->position().y()));
}

void TrackTable::leaveEvent(QEvent* event)
{
    setHoveredRow(-1);
    QTableView::leaveEvent(event);
}

void TrackTable::keyPressEvent(QKeyEvent* event)
{
    m_isKeyboardUsed = true;
    updateRow(currentIndex().row());
    QTableView::keyPressEvent(event);
}

void TrackTable::focusInEvent(QFocusEvent* event)
{
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        m_isKeyboardUsed = true;
    m_isTakingFocus = true; // else the first row would become the current one, which the user never chose
    QTableView::focusInEvent(event);
    m_isTakingFocus = false;
    updateRow(currentIndex().row());
}

QModelIndex TrackTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (m_isTakingFocus || m_model.rowCount() == 0)
        return {};
    const bool isPage = action == MovePageUp || action == MovePageDown;
    if (!isPage || !currentIndex().isValid())
        return QTableView::moveCursor(action, modifiers);
    const int page = std::max(1, (viewport()->height() - pinnedHeight()) / m_layout.rowHeight() - 1);
    const int row = currentIndex().row() + (action == MovePageUp ? -page : page);
    return m_model.index(std::clamp(row, 0, m_model.rowCount() - 1), currentIndex().column());
}

void TrackTable::focusOutEvent(QFocusEvent* event)
{
    QTableView::focusOutEvent(event);
    updateRow(currentIndex().row());
}

void TrackTable::contextMenuEvent(QContextMenuEvent* event)
{
    QPoint position = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        if (!currentIndex().isValid())
            return;
        scrollTo(currentIndex());
        position = viewport()->mapToGlobal(visualRect(currentIndex()).center());
    } else if (!indexAt(event->pos()).isValid()) {
        return;
    }
    emit contextMenuWanted(position);
}

void TrackTable::setHoveredRow(int row)
{
    if (row == m_hoveredRow)
        return;
    updateRow(std::exchange(m_hoveredRow, row));
    updateRow(row);
}

void TrackTable::updateRow(int row)
{
    if (row >= 0)
        viewport()->update(0, m_layout.rowTop(row) - verticalOffset(), viewport()->width(), m_layout.rowHeight());
}
