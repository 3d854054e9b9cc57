#include "ui/covers/CoverGrid.h"

#include "core/library/LibraryStore.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/CoverPaint.h"
#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/tracks/TrackListModel.h"

#include <QPainter>
#include <QScrollBar>

#include <cmath>

namespace {
constexpr int kMargin = Metrics::kSpace6;
constexpr int kTitleTop = 8; // below the picture
constexpr int kTitleLine = 18;
constexpr int kArtistLine = 17;
constexpr int kRingGap = 2; // between picture and ring
constexpr int kButton = 44;
constexpr int kWritingIcon = 28;
} // namespace

CoverGrid::CoverGrid(const WindowContext& context, TrackListModel& model, QWidget* parent)
    : QListView(parent)
    , m_context(context)
    , m_model(model)
    , m_mark(context.player)
{
    setModel(&model);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    connect(&context.thumbnails, &ThumbnailCache::ready, viewport(), qOverload<>(&QWidget::update));
    connect(&context.theme, &Theme::changed, viewport(), qOverload<>(&QWidget::update));
    connect(&context.store.workspace(), &Workspace::artworkWritingIDsChanged, viewport(),
            qOverload<>(&QWidget::update));
    connect(&context.store.notifications(), &Notifications::velmoraPlaybackDidChange, this,
            &CoverGrid::playbackChanged);
}

int CoverGrid::columns() const
{
    const int room = viewport()->width() - 2 * kMargin + Metrics::kCoverGap;
    return std::max(1, static_cast<int>(std::lround(room / double(Metrics::kCoverCell + Metrics::kCoverGap))));
}

double CoverGrid::cellWidth() const
{
    const int count = columns();
    return std::max(1.0, (viewport()->width() - 2.0 * kMargin - (count - 1.0) * Metrics::kCoverGap) / count);
}

int CoverGrid::rowPitch() const
{
    return static_cast<int>(cellWidth()) + Metrics::kCoverCaption + Metrics::kCoverGap;
}

int CoverGrid::rowTop(int gridRow) const
{
    return kMargin - Metrics::kStep + gridRow * rowPitch();
}

int CoverGrid::verticalOffset() const
{
    return verticalScrollBar()->value();
}

QRect CoverGrid::visualRect(const QModelIndex& index) const
{
    if (!index.isValid())
        return {};
    const int column = index.row() % columns();
    const int left = kMargin + static_cast<int>(column * (cellWidth() + Metrics::kCoverGap));
    return {left, rowTop(index.row() / columns()) - verticalOffset(), static_cast<int>(cellWidth()),
            static_cast<int>(cellWidth()) + Metrics::kCoverCaption};
}

QModelIndex CoverGrid::indexAt(const QPoint& position) const
{
    const int y = position.y() + verticalOffset() - rowTop(0);
    const int x = position.x() - kMargin;
    if (y < 0 || x < 0)
        return {};
    const int column = static_cast<int>(x / (cellWidth() + Metrics::kCoverGap));
    if (column >= columns())
        return {};
    const qint64 row = qint64(y / rowPitch()) * columns() + column;
    if (row >= m_model.rowCount())
        return {};
    const QModelIndex index = m_model.index(static_cast<int>(row), 0);
    return visualRect(index).contains(position) ? index : QModelIndex();
}

void CoverGrid::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    if (!index.isValid())
        return;
    const int top = rowTop(index.row() / columns()) - Metrics::kCoverGap;
    const int bottom = top + rowPitch() + Metrics::kCoverGap;
    const int height = viewport()->height();
    QScrollBar* bar = verticalScrollBar();
    if (hint == PositionAtTop)
        bar->setValue(top);
    else if (hint == PositionAtBottom)
        bar->setValue(bottom - height);
    else if (hint == PositionAtCenter)
        bar->setValue((top + bottom - height) / 2);
    else if (top < bar->value())
        bar->setValue(top);
    else if (bottom > bar->value() + height)
        bar->setValue(std::min(top, bottom - height));
}

void CoverGrid::doItemsLayout()
{
    QAbstractItemView::doItemsLayout();
}

void CoverGrid::rowsInserted(const QModelIndex& parent, int start, int end)
{
    QAbstractItemView::rowsInserted(parent, start, end);
    scheduleDelayedItemsLayout();
}

void CoverGrid::updateGeometries()
{
    const int gridRows = (m_model.rowCount() + columns() - 1) / columns();
    const int height = rowTop(gridRows) + kMargin - Metrics::kCoverGap;
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(rowPitch() / 3);
    horizontalScrollBar()->setRange(0, 0);
    QAbstractItemView::updateGeometries();
}

void CoverGrid::resizeEvent(QResizeEvent* event)
{
    const QModelIndex top = indexAt({kMargin + 1, Metrics::kCoverCell / 2});
    QAbstractItemView::resizeEvent(event);
    updateGeometries();
    if (top.isValid() && verticalOffset() > 0 && event->oldSize().width() != event->size().width())
        scrollTo(top, PositionAtTop);
}

void CoverGrid::scrollContentsBy(int dx, int dy)
{
    scrollDirtyRegion(dx, dy);
    viewport()->scroll(dx, dy);
}

QModelIndex CoverGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers)
{
    const int count = m_model.rowCount();
    if (count == 0 || m_isTakingFocus)
        return {};
    if (!currentIndex().isValid())
        return m_model.index(0, 0);
    const int page = std::max(1, viewport()->height() / rowPitch()) * columns();
    int row = currentIndex().row();
    switch (action) {
    case MoveLeft:
    case MovePrevious:
        row -= 1;
        break;
    case MoveRight:
    case MoveNext:
        row += 1;
        break;
    case MoveUp:
        row -= row >= columns() ? columns() : 0;
        break;
    case MoveDown:
        if (row + columns() < count)
            row += columns();
        else if (row / columns() < (count - 1) / columns())
            row = count - 1; // the last line is shorter
        break;
    case MovePageUp:
        row -= page;
        break;
    case MovePageDown:
        row += page;
        break;
    case MoveHome:
        row = 0;
        break;
    case MoveEnd:
        row = count - 1;
        break;
    }
    return m_model.index(std::clamp(row, 0, count - 1), 0);
}

void CoverGrid::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command)
{
    QItemSelection selection;
    const QModelIndex from = indexAt(rect.topLeft());
    const QModelIndex to = indexAt(rect.bottomRight());
    if (from.isValid() && to.isValid()) { // in reading order, as in a list
        selection.select(from.row() < to.row() ? from : to, from.row() < to.row() ? to : from);
    } else {
        for (int row : rowsTouched(rect.normalized()))
            selection.select(m_model.index(row, 0), m_model.index(row, 0));
    }
    selectionModel()->select(selection, command);
}

QList<int> CoverGrid::rowsTouched(const QRect& area) const
{
    QList<int> rows;
    const auto gridRow = [&](int y) { return std::max(0, (y + verticalOffset() - rowTop(0)) / rowPitch()); };
    const int end = std::min(m_model.rowCount(), (gridRow(area.bottom()) + 1) * columns());
    for (int row = gridRow(area.top()) * columns(); row < end; ++row) {
        if (visualRect(m_model.index(row, 0)).intersects(area))
            rows.append(row);
    }
    return rows;
}

QRegion CoverGrid::visualRegionForSelection(const QItemSelection&) const
{
    return viewport()->rect(); // some dozens of cells are in view, and they are cheap
}

void CoverGrid::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    const int first = std::max(0, (event->rect().top() + verticalOffset() - rowTop(1)) / rowPitch()) * columns();
    for (int row = first; row < m_model.rowCount(); ++row) {
        const QRect rect = visualRect(m_model.index(row, 0));
        if (rect.top() > event->rect().bottom() + Metrics::kCoverGap)
            break;
        paintCell(painter, row);
    }
}

void CoverGrid::paintCell(QPainter& painter, int row) const
{
    const QModelIndex index = m_model.index(row, 0);
    const QRect rect = visualRect(index);
    const Track& track = m_model.track(row);
    const ThemeColours& c = m_context.theme.colours();
    const QRect picture(rect.left(), rect.top(), rect.width(), rect.width());
    const bool isSelected = selectionModel()->isSelected(index);
    const bool isFocused = hasFocus() && currentIndex() == index && (m_isKeyboardUsed || !isSelected);
    CoverPaint::paint(painter, m_context, picture, Metrics::kRadiusLarge, &track);
    if (isWriting(track)) {
        Paint::roundedFill(painter, picture, Metrics::kRadiusLarge, c.coverVeil);
        QRect glyph(0, 0, kWritingIcon, kWritingIcon);
        glyph.moveCenter(picture.center());
        Icons::paint(painter, glyph, QStringLiteral("convert"), c.coverGlyph);
    } else if (row == m_hovered) {
        PlayingMark::paintButton(painter, buttonRect(index), kButton / 2, m_mark.of(track), m_context.theme);
    }
    const int reach = kRingGap + Metrics::kCoverRing;
    const QRect ring = picture.adjusted(-reach, -reach, reach, reach);
    if (isSelected)
        Paint::focusRing(painter, ring, Metrics::kRadiusLarge + kRingGap, c.accent);
    if (isFocused)
        Paint::card(painter, rect.adjusted(-reach - 2, -reach - 2, reach + 2, 2), Metrics::kRadiusLarge + reach,
                    Qt::transparent, c.accent);
    paintCaption(painter, rect.adjusted(0, rect.width() - 1 + kTitleTop, 0, 0), track);
}

void CoverGrid::paintCaption(QPainter& painter, const QRect& rect, const Track& track) const
{
    const ThemeColours& c = m_context.theme.colours();
    const PlayingMark::State mark = m_mark.of(track);
    const int indent = mark == PlayingMark::State::None ? 0 : PlayingMark::kSide + Metrics::kStep;
    PlayingMark::paint(painter, {rect.left(), rect.top(), PlayingMark::kSide, kTitleLine}, mark, m_context.theme);
    Paint::line(painter, {rect.left() + indent, rect.top(), rect.width() - indent, kTitleLine}, track.displayTitle(),
                m_context.theme.font(TextRole::BodyStrong), c.text);
    const QString second =
        isWriting(track) ? Texts::localized(QStringLiteral("Сохраняем обложку…")) : track.tags().artist;
    Paint::line(painter, {rect.left(), rect.top() + kTitleLine, rect.width(), kArtistLine}, second,
                m_context.theme.font(TextRole::Secondary), c.text2);
}

bool CoverGrid::isWriting(const Track& track) const
{
    return m_context.store.workspace().artworkWritingIDs().contains(track.id());
}

QRect CoverGrid::buttonRect(const QModelIndex& index) const
{
    const QRect cell = visualRect(index);
    const int inset = (cell.width() - kButton) / 2;
    return {cell.left() + inset, cell.top() + inset, kButton, kButton};
}

QModelIndex CoverGrid::buttonAt(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    return index.isValid() && buttonRect(index).contains(position) ? index : QModelIndex();
}

void CoverGrid::playbackChanged()
{
    for (int row : rowsTouched(viewport()->rect())) {
        if (m_mark.isAffected(m_model.track(row)))
            viewport()->update(visualRect(m_model.index(row, 0)));
    }
    m_mark.remember();
}
