#pragma once

#include "ui/cells/TrackColumns.h"
#include "ui/context/WindowContext.h"
#include "ui/tracks/PlayingMark.h"

#include <QStyledItemDelegate>

class TrackListModel;

/// How the view stands towards a row; asked for every cell that is drawn.
struct RowState {
    bool isHovered = false;
    bool hasFocusRing = false;
    bool isFirstColumn = false;
    bool isLastColumn = false;
    PlayingMark::State mark = PlayingMark::State::None;
    double played = 0; ///< fraction of the track, for the waveform
};

/// Draws the cells of a TrackListModel. Looks nothing up that takes time: covers and waveforms that are not at hand
/// are asked for and drawn when they have come. Thread: main.
class TrackDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Asked for every cell that is drawn; cheap.
    using StateOf = std::function<RowState(const QModelIndex&)>;

    /// \param stateOf of the view that it draws for
    TrackDelegate(const WindowContext& context, StateOf stateOf, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
    /// The full text of a cell where \p cell is too narrow for it or where it is shown in other words; else empty.
    /// \param cell in pixels of the viewport
    QString tooltip(const QModelIndex& index, const QRect& cell) const;
    /// Where the cover stands in its cell.
    static QRect coverRect(const QRect& cell);
    /// Where the waveform stands in its cell.
    static QRect waveformRect(const QRect& cell);

private:
    void paintRow(QPainter& painter, const QStyleOptionViewItem& option, const RowState& state) const;
    void paintCell(QPainter& painter, const QRect& rect, const QModelIndex& index, const RowState& state) const;
    void paintCover(QPainter& painter, const QRect& rect, const Track& track, const RowState& state) const;
    void paintTitle(QPainter& painter, const QRect& rect, const Track& track) const;
    void paintWaveform(QPainter& painter, const QRect& rect, const Track& track, double played) const;
    void paintTempo(QPainter& painter, const QRect& rect, const QString& text) const;
    void paintKey(QPainter& painter, const QRect& rect, const QString& text) const;
    void paintHeart(QPainter& painter, const QRect& rect, bool isFavorite) const;

    WindowContext m_context;
    StateOf m_stateOf;
};
