#include "ui/tracks/ColumnHeader.h"

#include "platform/Localization.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/tracks/TrackListModel.h"

#include <QPainter>

ColumnHeader::ColumnHeader(const Theme& theme, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent)
    , m_theme(theme)
{
    setSectionsClickable(false);
    setHighlightSections(false);
    setSectionResizeMode(QHeaderView::Fixed);
    setMinimumSectionSize(0);
    setFocusPolicy(Qt::NoFocus);
}

void ColumnHeader::setSortMark(TrackSortField field, TrackSortDirection direction)
{
    m_field = field;
    m_direction = direction;
    viewport()->update();
}

QSize ColumnHeader::sizeHint() const
{
    return {QHeaderView::sizeHint().width(), Metrics::kColumnHeadHeight};
}

void ColumnHeader::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    const ThemeColours& c = m_theme.colours();
    painter.fillRect(viewport()->rect(), c.background);
    painter.fillRect(0, height() - Metrics::kHairline, width(), Metrics::kHairline, c.line);
    painter.end();
    QHeaderView::paintEvent(event);
}

void ColumnHeader::paintSection(QPainter* painter, const QRect& rect, int section) const
{
    const auto* tracks = qobject_cast<const TrackListModel*>(model());
    if (!tracks)
        return;
    const ThemeColours& c = m_theme.colours();
    const bool numeric = TrackColumns::isNumeric(tracks->columnAt(section));
    const bool isMarked = TrackColumns::sortField(tracks->columnAt(section)) == m_field;
    QString text =
        VelmoraLocalization::locale().toUpper(tracks->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString());
    if (isMarked) {
        const QString arrow =
            m_direction == TrackSortDirection::Ascending ? QStringLiteral("\u25B2") : QStringLiteral("\u25BC");
        text = numeric ? arrow + u' ' + text : text + u' ' + arrow;
    }
    Paint::line(*painter, rect.adjusted(0, 0, -Metrics::kSpace3, 0), text, m_theme.font(TextRole::ColumnHead),
                isMarked ? c.text2 : c.text3, numeric ? Qt::AlignRight : Qt::AlignLeft);
}
