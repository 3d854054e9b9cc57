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
    const QString text = tracks->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    const bool numeric = TrackColumns::isNumeric(tracks->columnAt(section));
    Paint::line(*painter, rect.adjusted(0, 0, -Metrics::kSpace3, 0), VelmoraLocalization::locale().toUpper(text),
                m_theme.font(TextRole::ColumnHead), m_theme.colours().text3, numeric ? Qt::AlignRight : Qt::AlignLeft);
}
