#include "ui/controls/Panel.h"

#include <QPainter>

Panel::Panel(const Theme& theme, QColor ThemeColours::*fill, Qt::Edges lines, QWidget* parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_fill(fill)
    , m_lines(lines)
{
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Panel::setLines(Qt::Edges lines)
{
    m_lines = lines;
    update();
}

void Panel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_theme.colours();
    painter.fillRect(rect(), c.*m_fill);
    constexpr int kThick = Metrics::kHairline;
    if (m_lines.testFlag(Qt::TopEdge))
        painter.fillRect(0, 0, width(), kThick, c.line);
    if (m_lines.testFlag(Qt::BottomEdge))
        painter.fillRect(0, height() - kThick, width(), kThick, c.line);
    if (m_lines.testFlag(Qt::LeftEdge))
        painter.fillRect(0, 0, kThick, height(), c.line);
    if (m_lines.testFlag(Qt::RightEdge))
        painter.fillRect(width() - kThick, 0, kThick, height(), c.line);
}
