#include "ui/covers/CoverGrid.h"

#include "ui/text/Texts.h"
#include "ui/theme/Theme.h"
#include "ui/tracks/TrackListModel.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QToolTip>

// What keys, mouse and pointer do in the grid.

void CoverGrid::keyPressEvent(QKeyEvent* event)
{
    m_isKeyboardUsed = true;
    viewport()->update();
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn)
        QListView::keyPressEvent(event);
    else if (currentIndex().isValid() && !event->isAutoRepeat())
        emit playWanted(m_model.track(currentIndex().row()));
}

void CoverGrid::focusInEvent(QFocusEvent* event)
{
    m_isTakingFocus = true; // else the first cover would become the current one, which the user never chose
    QListView::focusInEvent(event);
    m_isTakingFocus = false;
}

void CoverGrid::mousePressEvent(QMouseEvent* event)
{
    m_isKeyboardUsed = false;
    const bool isPlain = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier;
    m_pressedButton = isPlain ? buttonAt(event->position().toPoint()) : QModelIndex();
    if (!m_pressedButton.isValid())
        QListView::mousePressEvent(event);
}

void CoverGrid::mouseReleaseEvent(QMouseEvent* event)
{
    const QModelIndex pressed = std::exchange(m_pressedButton, QPersistentModelIndex());
    if (!pressed.isValid())
        QListView::mouseReleaseEvent(event);
    else if (buttonAt(event->position().toPoint()) == pressed)
        emit playWanted(m_model.track(pressed.row()));
}

void CoverGrid::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint place = event->position().toPoint();
    const QModelIndex index = indexAt(place);
    const bool isPlain = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier;
    if (!isPlain || !index.isValid())
        QListView::mouseDoubleClickEvent(event);
    else if (!buttonAt(place).isValid()) // there the first click did it
        emit playWanted(m_model.track(index.row()));
}

void CoverGrid::mouseMoveEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    setHovered(index.isValid() ? index.row() : -1);
    if (!m_pressedButton.isValid())
        QListView::mouseMoveEvent(event);
}

void CoverGrid::leaveEvent(QEvent* event)
{
    setHovered(-1);
    QListView::leaveEvent(event);
}

void CoverGrid::setHovered(int row)
{
    if (row == m_hovered)
        return;
    m_hovered = row;
    viewport()->update();
}

void CoverGrid::contextMenuEvent(QContextMenuEvent* event)
{
    QPoint position = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        if (!currentIndex().isValid())
            return;
        position = viewport()->mapToGlobal(visualRect(currentIndex()).center());
    } else if (!indexAt(event->pos()).isValid()) {
        return;
    }
    emit contextMenuWanted(position);
}

bool CoverGrid::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QListView::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    showTooltip(help->pos(), help->globalPos());
    return true;
}

void CoverGrid::showTooltip(const QPoint& position, const QPoint& global)
{
    const QModelIndex index = indexAt(position);
    QString text;
    if (index.isValid()) {
        const Track& track = m_model.track(index.row());
        const int width = visualRect(index).width();
        const QFontMetrics title(m_context.theme.font(TextRole::BodyStrong));
        const QFontMetrics artist(m_context.theme.font(TextRole::Secondary));
        if (title.horizontalAdvance(track.displayTitle()) > width ||
            artist.horizontalAdvance(track.tags().artist) > width)
            text = Texts::spoken(track);
    }
    QToolTip::showText(global, text, viewport(), visualRect(index));
}
