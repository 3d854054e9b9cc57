#include "ui/inspector/SuggestionList.h"

#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QStyledItemDelegate>

namespace {

class Row final : public QStyledItemDelegate {
public:
    Row(const Theme& theme, QObject* parent)
        : QStyledItemDelegate(parent)
        , m_theme(theme)
    {
    }
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {0, Metrics::kMenuRowHeight};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const ThemeColours& c = m_theme.colours();
        const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
        const QRect row = option.rect.adjusted(Metrics::kStep, 0, -Metrics::kStep, 0);
        if (isCurrent)
            Paint::roundedFill(*painter, row, Metrics::kRadiusSmall, c.selection);
        Paint::line(*painter, row.adjusted(Metrics::kSpace2, 0, -Metrics::kSpace2, 0), index.data().toString(),
                    m_theme.font(TextRole::Body), c.text);
    }

private:
    const Theme& m_theme;
};

} // namespace

SuggestionList::SuggestionList(const Theme& theme)
    : m_theme(theme)
{
    setItemDelegate(new Row(theme, this));
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollMode(ScrollPerPixel);
    viewport()->setAutoFillBackground(false);
    setUniformItemSizes(true);
}

void SuggestionList::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), m_theme.colours().raised);
    Paint::frame(painter, viewport()->rect(), m_theme.colours().line);
    painter.end();
    QListView::paintEvent(event);
}
