#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"
#include "ui/tracks/PlayingMark.h"

#include <QListView>

class TrackListModel;

/// Covers as a grid of equal cells with title and artist below. Every place is computed from the row number, so that
/// the size of the list does not matter. Owned by the page. Thread: main.
class CoverGrid : public QListView {
    Q_OBJECT

public:
    /// \param model outlives the view.
    CoverGrid(const WindowContext& context, TrackListModel& model, QWidget* parent = nullptr);

    QRect visualRect(const QModelIndex& index) const override;
    QModelIndex indexAt(const QPoint& position) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;
    /// How many cells stand side by side; at least one.
    int columns() const;

Q_SIGNALS:
    /// The row under the pointer is selected already.
    void contextMenuWanted(const QPoint& globalPosition);
    /// A double click, Return, or a click on the button that a cover shows under the pointer.
    void playWanted(const Track& track);

protected:
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    bool isIndexHidden(const QModelIndex&) const override { return false; }
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyboardSearch(const QString&) override {}
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    double cellWidth() const;
    int rowPitch() const;
    int rowTop(int gridRow) const; ///< in the contents
    QList<int> rowsTouched(const QRect& area) const;
    void paintCell(QPainter& painter, int row) const;
    void paintCaption(QPainter& painter, const QRect& rect, const Track& track) const;
    bool isWriting(const Track& track) const; ///< a picture is on its way into the file
    QRect buttonRect(const QModelIndex& index) const;
    QModelIndex buttonAt(const QPoint& position) const;
    void playbackChanged();
    void showTooltip(const QPoint& position, const QPoint& global);
    void setHovered(int row);

    WindowContext m_context;
    TrackListModel& m_model;
    PlayingMark m_mark;
    QPersistentModelIndex m_pressedButton;
    int m_hovered = -1;
    bool m_isTakingFocus = false;
    bool m_isKeyboardUsed = false;
};
