#include "ui/player/TimeLabel.h"

#include "ui/text/Texts.h"
#include "ui/theme/Paint.h"

#include <QPainter>

namespace {
constexpr double kLongest = 9 * 3600 + 59 * 60 + 59; // seconds; what the column has room for
}

TimeLabel::TimeLabel(const Theme& theme, Qt::Alignment alignment, QWidget* parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_alignment(alignment)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void TimeLabel::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    update();
}

QSize TimeLabel::sizeHint() const
{
    const QFont& font = m_theme.font(TextRole::Secondary);
    const bool isRemaining = m_alignment.testFlag(Qt::AlignLeft);
    const QString longest = isRemaining ? Texts::remaining(0, kLongest) : Texts::position(kLongest, kLongest);
    return {Paint::numberWidth(longest, font) + 1, QFontMetrics(font).height() + 2};
}

void TimeLabel::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const ThemeColours& c = m_theme.colours();
    const QFont& font = m_theme.font(TextRole::Secondary);
    painter.fillRect(event->rect(), c.surface);
    QRect room = rect();
    if (m_alignment.testFlag(Qt::AlignLeft))
        room.setWidth(std::min(room.width(), Paint::numberWidth(m_text, font)));
    Paint::number(painter, room, m_text, font, isEnabled() ? c.text2 : c.text3);
}
