#include "ui/controls/ThemeLabel.h"

#include "ui/theme/Paint.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {
constexpr int kWrapFlags = Qt::AlignHCenter | Qt::TextWordWrap;
}

ThemeLabel::ThemeLabel(const Theme& theme, TextRole role, ColourOf colour, QWidget* parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_role(role)
    , m_colour(colour)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ThemeLabel::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

void ThemeLabel::setColour(ColourOf colour)
{
    m_colour = colour;
    update();
}

void ThemeLabel::setWrapped(int width)
{
    m_wrapWidth = width;
    updateGeometry();
}

QSize ThemeLabel::sizeHint() const
{
    const QFontMetrics metrics(m_theme.font(m_role));
    if (m_wrapWidth > 0)
        return {m_wrapWidth, metrics.boundingRect(QRect(0, 0, m_wrapWidth, 0), kWrapFlags, m_text).height()};
    return {metrics.horizontalAdvance(m_text) + 1, metrics.height() + 1};
}

QSize ThemeLabel::minimumSizeHint() const
{
    return m_wrapWidth > 0 ? sizeHint() : QSize(0, sizeHint().height());
}

void ThemeLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor colour = m_theme.colours().*m_colour;
    if (m_wrapWidth == 0) {
        Paint::line(painter, rect(), m_text, m_theme.font(m_role), colour);
        return;
    }
    painter.setFont(m_theme.font(m_role));
    painter.setPen(colour);
    painter.drawText(rect(), kWrapFlags, m_text);
}

bool ThemeLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && m_wrapWidth == 0) {
        const bool isElided = QFontMetrics(m_theme.font(m_role)).horizontalAdvance(m_text) > width();
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), isElided ? m_text : QString(), this);
        return true;
    }
    return QWidget::event(event);
}
