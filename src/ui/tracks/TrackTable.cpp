#include "ui/tracks/TrackTable.h"

#include "core/library/LibraryStore.h"
#include "core/library/tempo/Tempo.h"
#include "platform/Notifications.h"
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
    , m_mark(context.player)
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
    connect(&context.store.notifications(), &Notifications::velmoraPlaybackDidChange, this,
            &TrackTable::playbackChanged);
    connect(&context.store.tempo(), &Tempo::playlistBPMStatesChanged, this, &TrackTable::updateTempos);
    connectWaveforms();
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

/// Of all rows that may have another tempo those in view matter.
void TrackTable::updateTempos(const QSet<TrackID>& ids)
{
    if (!isVisible())
        return;
    const RowRange range = rowsInView();
    for (int row = range.first; row < range.end; ++row) {
        if (ids.contains(m_model.track(row).id()))
            m_model.bpmStateChanged(row);
    }
}

/// The base class repaints where rows would stand without folder headers.
void TrackTable::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles)
{
    QTableView::dataChanged(topLeft, bottomRight, roles);
    if (!topLeft.isValid() || !bottomRight.isValid())
        return;
    const int top = m_layout.rowTop(topLeft.row()) - verticalOffset();
    const int bottom = m_layout.rowTop(bottomRight.row()) - verticalOffset() + m_layout.rowHeight();
    viewport()->update(QRect(0, top, viewport()->width(), bottom - top).intersected(viewport()->rect()));
}

void TrackTable::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    applyWidths();
    dropWaveformsOutOfView();
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
    m_anchorRow = row;
    m_before = m_anchor.isValid() ? m_model.rows() : QList<Track>();
}

void TrackTable::endRows()
{
    const QModelIndex anchor = std::exchange(m_anchor, QPersistentModelIndex());
    const QList<Track> before = std::exchange(m_before, {});
    updateGeometries();
    const int row = anchor.isValid() || before.isEmpty() ? anchor.row() : survivorsAbove(before, m_anchorRow);
    if (row >= 0)
        verticalScrollBar()->setValue(m_layout.rowTop(std::min(row, m_model.rowCount() - 1)) - m_anchorOffset);
    dropWaveformsOutOfView();
}

/// How many of the rows above one that left are still there: the place of the next one that stayed.
int TrackTable::survivorsAbove(const QList<Track>& before, int row) const
{
    const QList<Track>& rows = m_model.rows();
    int count = 0;
    for (int above = 0; above < row && count < rows.size(); ++above)
        count += before[above].id() == rows[count].id() ? 1 : 0;
    return count;
}

RowState TrackTable::stateOf(const QModelIndex& index) const
{
    RowState state;
    state.isHovered = index.row() == m_hoveredRow;
    state.isFirstColumn = index.column() == m_firstColumn;
    state.isLastColumn = index.column() == m_lastColumn;
    const TrackColumn column = m_model.columnAt(index.column());
    if (column == TrackColumn::Cover)
        state.mark = m_mark.of(m_model.track(index.row()));
    if (column == TrackColumn::Waveform)
        state.played = playedOf(m_model.track(index.row()));
    if (!hasFocus() || currentIndex().row() != index.row())
        return state;
    // One selected row is its own mark; among several, or away from them, the focus needs one.
    const bool isOnlyRow = m_selected.isOne && selectionModel()->isSelected(index);
    state.hasFocusRing = m_isKeyboardUsed || (m_selected.isAny && !isOnlyRow);
    return state;
}

QModelIndex TrackTable::heartAt(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    return index.isValid() && m_model.columnAt(index.column()) == TrackColumn::Heart ? index : QModelIndex();
}

QModelIndex TrackTable::coverAt(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    const bool isCover = index.isValid() && m_model.columnAt(index.column()) == TrackColumn::Cover &&
                         TrackDelegate::coverRect(visualRect(index)).contains(position);
    return isCover ? index : QModelIndex();
}

/// Only the rows in view are looked at, and of these only those repainted that win or lose the mark.
void TrackTable::playbackChanged()
{
    const RowRange range = rowsInView();
    for (int row = range.first; row < range.end; ++row) {
        if (m_mark.isAffected(m_model.track(row)))
            updateRow(row);
    }
    m_mark.remember();
}

void TrackTable::mousePressEvent(QMouseEvent* event)
{
    m_isKeyboardUsed = false;
    const QPoint place = event->position().toPoint();
    const bool isLeft = event->button() == Qt::LeftButton;
    m_pressedHeart = isLeft ? heartAt(place) : QModelIndex();
    m_pressedCover = isLeft && event->modifiers() == Qt::NoModifier ? coverAt(place) : QModelIndex();
    if (!m_pressedHeart.isValid() && !m_pressedCover.isValid())
        QTableView::mousePressEvent(event);
}

void TrackTable::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint place = event->position().toPoint();
    const QModelIndex heart = std::exchange(m_pressedHeart, QPersistentModelIndex());
    const QModelIndex cover = std::exchange(m_pressedCover, QPersistentModelIndex());
    if (heart.isValid()) {
        if (heartAt(place) == heart)
            emit heartClicked(m_model.track(heart.row()).id());
    } else if (cover.isValid()) {
        if (coverAt(place) == cover)
            emit playWanted(m_model.track(cover.row()));
    } else {
        QTableView::mouseReleaseEvent(event);
    }
}

void TrackTable::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint place = event->position().toPoint();
    if (heartAt(place).isValid()) {
        mousePressEvent(event); // two quick clicks are two toggles
        return;
    }
    const QModelIndex index = indexAt(place);
    const bool isPlain = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier;
    if (!isPlain || !index.isValid())
        QTableView::mouseDoubleClickEvent(event);
    else if (!coverAt(place).isValid()) // there the first click did it
        emit playWanted(m_model.track(index.row()));
}

void TrackTable::mouseMoveEvent(QMouseEvent* event)
{
    setHoveredRow(rowAtViewport(event->position().y()));
    if (!m_pressedHeart.isValid() && !m_pressedCover.isValid())
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
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn)
        QTableView::keyPressEvent(event);
    else if (currentIndex().isValid() && !event->isAutoRepeat())
        emit playWanted(m_model.track(currentIndex().row()));
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
