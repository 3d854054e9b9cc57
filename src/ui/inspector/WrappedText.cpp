#include "ui/inspector/WrappedText.h"

#include "ui/theme/Paint.h"

#include <QTextLayout>

WrappedText::WrappedText(const Theme& theme, const Look& look, QWidget* parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_look(look)
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void WrappedText::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    setToolTip(brokenLines(width()).join(u' ').endsWith(QChar(0x2026)) ? text : QString());
    updateGeometry();
    update();
}

/// File names have few spaces: a word that is too long breaks anywhere.
QStringList WrappedText::brokenLines(int width) const
{
    const QFont& font = m_theme.font(m_look.role);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(m_text, font);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1, width));
        if (lines.size() + 1 == m_look.lines) {
            lines.append(QFontMetrics(font).elidedText(m_text.mid(line.textStart()), Qt::ElideRight, width));
            break;
        }
        lines.append(m_text.mid(line.textStart(), line.textLength()));
    }
    layout.endLayout();
    return lines;
}

int WrappedText::heightForWidth(int width) const
{
    const QFontMetrics metrics(m_theme.font(m_look.role));
    const int lines = std::max<int>(1, static_cast<int>(brokenLines(width).size()));
    return lines * metrics.lineSpacing() + 1;
}

QSize WrappedText::sizeHint() const
{
    return {std::max(1, width()), heightForWidth(width())};
}

QSize WrappedText::minimumSizeHint() const
{
    return {0, QFontMetrics(m_theme.font(m_look.role)).lineSpacing() + 1};
}

void WrappedText::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    setToolTip(brokenLines(width()).join(u' ').endsWith(QChar(0x2026)) ? m_text : QString());
    if (event->size().width() != event->oldSize().width())
        updateGeometry();
}

void WrappedText::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QFont& font = m_theme.font(m_look.role);
    const int lineHeight = QFontMetrics(font).lineSpacing();
    int y = 0;
    for (const QString& line : brokenLines(width())) {
        Paint::line(painter, {0, y, width(), lineHeight}, line.trimmed(), font, m_theme.colours().*m_look.colour);
        y += lineHeight;
    }
}
