#pragma once

#include "core/model/TrackSort.h"

#include <QHeaderView>

class Theme;

/// The headings of a list: small capitals over a hairline.
class ColumnHeader : public QHeaderView {
    Q_OBJECT

public:
    /// \param theme outlives the header
    ColumnHeader(const Theme& theme, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    /// Marks the column that the rows are sorted by, with an arrow for the direction.
    void setSortMark(TrackSortField field, TrackSortDirection direction);

protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

private:
    const Theme& m_theme;
    TrackSortField m_field = TrackSortField::Original;
    TrackSortDirection m_direction = TrackSortDirection::Ascending;
};
