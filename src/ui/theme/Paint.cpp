#include "ui/theme/Paint.h"

#include "ui/theme/Metrics.h"

#include <QFontMetricsF>
#include <QPainterPath>

namespace {

constexpr int kChipPadding = 7;
constexpr int kChipMinimumWidth = 30;

double digitWidth(const QFontMetricsF& metrics)
{
    double width = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        width = std::max(width, metrics.horizontalAdvance(QChar(digit)));
    return width;
}

double advance(const QFontMetricsF& metrics, QChar character, double digit)
{
    return character.isDigit() ? digit : metrics.horizontalAdvance(character);
}

void stroke(QPainter& painter, const QPolygonF& line, const QColor& colour)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.75, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(line);
    painter.restore();
}

} // namespace

namespace Paint {

void roundedFill(QPainter& painter, const QRectF& rect, double radius, const QColor& colour)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void card(QPainter& painter, const QRect& rect, double radius, const QColor& fill, const QColor& line)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, Metrics::kHairline));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

void frame(QPainter& painter, const QRect& rect, const QColor& colour)
{
    painter.setPen(QPen(colour, Metrics::kHairline));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5));
}

void focusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& colour)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, Metrics::kFocusWidth));
    painter.setBrush(Qt::NoBrush);
    const double inset = Metrics::kFocusWidth / 2.0;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.restore();
}

void checkMark(QPainter& painter, const QRect& rect, const QColor& colour)
{
    const QPointF c = QRectF(rect).center();
    stroke(painter, {c + QPointF(-4.5, 0.5), c + QPointF(-1.5, 3.5), c + QPointF(4.5, -3.5)}, colour);
}

void chevronRight(QPainter& painter, const QRect& rect, const QColor& colour)
{
    const QPointF c(rect.right() - 4, QRectF(rect).center().y());
    stroke(painter, {c + QPointF(-2, -4), c + QPointF(2, 0), c + QPointF(-2, 4)}, colour);
}

void line(QPainter& painter, const QRect& rect, const QString& text, const QFont& font, const QColor& colour,
          Qt::Alignment alignment)
{
    if (text.isEmpty() || rect.width() <= 0)
        return;
    painter.setFont(font);
    painter.setPen(colour);
    const QFontMetrics metrics(font);
    painter.drawText(rect, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                     metrics.elidedText(text, Qt::ElideRight, rect.width()));
}

int numberWidth(const QString& text, const QFont& font)
{
    const QFontMetricsF metrics(font);
    const double digit = digitWidth(metrics);
    double width = 0;
    for (QChar character : text)
        width += advance(metrics, character, digit);
    return static_cast<int>(std::ceil(width));
}

int number(QPainter& painter, const QRect& rect, const QString& text, const QFont& font, const QColor& colour)
{
    const QFontMetricsF metrics(font);
    const double digit = digitWidth(metrics);
    painter.setFont(font);
    painter.setPen(colour);
    const double baseline = rect.top() + (rect.height() + metrics.ascent() - metrics.descent()) / 2;
    double right = rect.right() + 1;
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        const double cell = advance(metrics, text[i], digit);
        const double own = metrics.horizontalAdvance(text[i]);
        painter.drawText(QPointF(right - cell + (cell - own) / 2, baseline), QString(text[i]));
        right -= cell;
    }
    return static_cast<int>(std::floor(right));
}

int chip(QPainter& painter, const QPoint& leftCentre, const QString& text, const QFont& font, const QColor& fill,
         const QColor& textColour)
{
    const int width = std::max(kChipMinimumWidth, QFontMetrics(font).horizontalAdvance(text) + 2 * kChipPadding);
    const QRect rect(leftCentre.x(), leftCentre.y() - Metrics::kChipHeight / 2, width, Metrics::kChipHeight);
    roundedFill(painter, rect, Metrics::kRadiusSmall, fill);
    painter.setFont(font);
    painter.setPen(textColour);
    painter.drawText(rect, Qt::AlignCenter, text);
    return width;
}

} // namespace Paint
