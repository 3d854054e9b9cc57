#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"
#include "ui/tracks/FolderHeader.h"
#include "ui/tracks/PlayingMark.h"
#include "ui/tracks/RowLayout.h"
#include "ui/tracks/TrackDelegate.h"

#include <QTableView>

class TrackListModel;

/// The list of tracks as rows, with a header above each folder where there are any; the header of the folder in view is
/// pinned. Selection is by rows; a click on a heart toggles it without touching the selection. Rows are placed by
/// computation, so that the length of the list does not matter.
class TrackTable : public QTableView {
    Q_OBJECT

public:
    /// \param model outlives the view.
    TrackTable(const WindowContext& context, TrackListModel& model, QWidget* parent = nullptr);

    /// \param density scale of the row height.
    void setDensity(double density);
    /// Its model.
    TrackListModel& tracks() const { return m_model; }
    /// The folders of the rows as they are now; none for a list without headers.
    void setFolders(const QList<FolderRun>& runs);
    /// Where rows and headers stand at present.
    const RowLayout& rowLayout() const { return m_layout; }
    /// Totals of the folders may differ from now on.
    void rowsChanged();

    QRect visualRect(const QModelIndex& index) const override;
    QModelIndex indexAt(const QPoint& position) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    /// Where the list is scrolled to.
    struct ScrollPlace {
        int offset = 0; ///< pixels
        TrackID topRow; ///< the first row below the pinned header; null without rows
    };
    /// Where it stands now.
    ScrollPlace scrollPlace() const;
    /// Scrolls there: to the pixel where the row still stands there, else so that the row is the first.
    void setScrollPlace(const ScrollPlace& place);

    /// Around changes of the rows: what stands at the top of the view stays there.
    void beginRows();
    void endRows();

Q_SIGNALS:
    /// The selection is as it was.
    void heartClicked(const QUuid& trackID);
    /// A double click, Return, or a click on the button that the cover shows under the pointer.
    void playWanted(const Track& track);
    /// The row under the pointer is selected already.
    void contextMenuWanted(const QPoint& globalPosition);

protected:
    bool event(QEvent* event) override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles) override;
    int verticalOffset() const override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// Letters are commands here, not a search.
    void keyboardSearch(const QString&) override {}
    void wheelEvent(QWheelEvent* event) override;

private:
    int rowAtViewport(double y) const;
    int pinnedHeight() const;
    void lookAtSelection(int first, int last);
    void paintRow(QPainter& painter, QStyleOptionViewItem& option, int row) const;
    void paintFolders(QPainter& painter) const;
    /// Shares the width of the view out among the columns; see TrackColumns::widths().
    void applyWidths();
    RowState stateOf(const QModelIndex& index) const;
    QModelIndex heartAt(const QPoint& position) const;
    QModelIndex coverAt(const QPoint& position) const;
    void playbackChanged();
    /// Rows from first to before end.
    struct RowRange {
        int first = 0;
        int end = 0;
    };
    RowRange rowsInView() const;
    /// Repaints the waveform of a row when it has come, and the played part of the current row as it goes on.
    void connectWaveforms();
    bool showsWaveforms() const;
    void dropWaveformsOutOfView();
    void updateWaveforms(const QUrl& url);
    double playedOf(const Track& track) const;
    void movePlayed();
    void updateTempos(const QSet<TrackID>& ids);
    /// The row under the pointer; -1 for none.
    void setHoveredRow(int row);
    void updateRow(int row);
    int survivorsAbove(const QList<Track>& before, int row) const;

    WindowContext m_context;
    TrackListModel& m_model;
    RowLayout m_layout;
    FolderHeader m_folderHeader;
    int m_hoveredRow = -1;
    PlayingMark m_mark;
    /// What the picture that is being painted shows of the selection.
    struct Selected {
        std::vector<bool> rows; ///< those painted, from the first on
        bool isAny = false;     ///< whether any row of the list is
        bool isOne = false;     ///< whether one alone is
    };
    Selected m_selected;
    QPersistentModelIndex m_pressedHeart;
    QPersistentModelIndex m_pressedCover;
    QPersistentModelIndex m_anchor; ///< row at the top of the view while rows change
    QList<Track> m_before;          ///< the rows until then
    int m_anchorRow = 0;            ///< its place among them
    int m_anchorOffset = 0;         ///< its place in the viewport, pixels
    bool m_isTakingFocus = false;
    bool m_isBeingShown = false;
    bool m_isKeyboardUsed = false; ///< the last step came from the keyboard
    int m_firstColumn = 0;
    int m_lastColumn = 0;
    std::optional<int> m_waveformColumn;
    double m_playedPlace = 0; ///< end of the played part in the current row's waveform, pixels from its left edge
};
