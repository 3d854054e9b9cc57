#include "ui/controls/ThemeButton.h"

#include "ui/theme/Icons.h"
#include "ui/theme/Motion.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace {
constexpr int kPadding = 14;
constexpr int kIconGap = 8;
constexpr int kIconSide = 16;
constexpr int kRoundIcon = 22;
constexpr double kLighter = 0.10; // of the text's colour laid over a hovered accent
constexpr int kRingWidth = 3;
constexpr int kRingLength = 270; // degrees
constexpr int kTurn = 20;        // degrees
constexpr int kTurnMilliseconds = 50;
} // namespace

ThemeButton::ThemeButton(const Theme& theme, Kind kind, QWidget* parent)
    : QAbstractButton(parent)
    , m_theme(theme)
    , m_kind(kind)
{
    setFocusPolicy(Qt::TabFocus);
    setCursor(kind == Kind::Link ? Qt::PointingHandCursor : Qt::ArrowCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ThemeButton::setContent(const QString& text, const QString& iconName)
{
    m_iconName = iconName;
    setText(text);
    setAccessibleName(text);
    updateGeometry();
}

void ThemeButton::setIconOnly(const QString& iconName, const QString& name, const QString& hotkey)
{
    m_iconName = iconName;
    setAccessibleName(name);
    setToolTip(hotkey.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, hotkey));
    update();
}

void ThemeButton::setIconColour(const QColor& colour)
{
    m_iconColour = colour;
    update();
}

void ThemeButton::setBusy(bool isBusy)
{
    if (m_isBusy == isBusy)
        return;
    m_isBusy = isBusy;
    if (isBusy && !Motion::isReduced())
        m_turning.start(kTurnMilliseconds, this);
    else
        m_turning.stop();
    update();
}

void ThemeButton::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_turning.timerId()) {
        QAbstractButton::timerEvent(event);
        return;
    }
    m_turn = (m_turn + kTurn) % 360;
    update();
}

void ThemeButton::paintBusyRing(QPainter& painter) const
{
    constexpr int kSixteenths = 16; // the toolkit's unit of angles
    const double inset = kRingWidth / 2.0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_theme.colours().accent, kRingWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(QRectF(rect()).adjusted(inset, inset, -inset, -inset), -m_turn * kSixteenths,
                    kRingLength * kSixteenths);
}

const QFont& ThemeButton::labelFont() const
{
    return m_theme.font(m_kind == Kind::Link ? TextRole::SecondaryStrong : TextRole::BodyStrong);
}

QSize ThemeButton::sizeHint() const
{
    const int textWidth = QFontMetrics(labelFont()).horizontalAdvance(text());
    if (m_kind == Kind::Round)
        return {Metrics::kPlayButton, Metrics::kPlayButton};
    if (m_kind == Kind::Link)
        return {textWidth + 2 * Metrics::kStep, Metrics::kStatusHeight - Metrics::kStep};
    if (text().isEmpty())
        return {Metrics::kButtonHeight, Metrics::kButtonHeight};
    const int iconWidth = m_iconName.isEmpty() ? 0 : kIconSide + kIconGap;
    return {textWidth + iconWidth + 2 * kPadding, Metrics::kButtonHeight};
}

QColor ThemeButton::textColour() const
{
    const ThemeColours& c = m_theme.colours();
    if (!isEnabled())
        return c.text3;
    switch (m_kind) {
    case Kind::Round:
        return c.surface;
    case Kind::Accent:
        return c.accentText;
    case Kind::Link:
        return c.accent;
    case Kind::Quiet:
        return underMouse() ? c.text : c.text2;
    case Kind::Plain:
        break;
    }
    return c.text;
}

double ThemeButton::cornerRadius() const
{
    return m_kind == Kind::Round ? width() / 2.0 : Metrics::kRadius;
}

void ThemeButton::paintBackground(QPainter& painter) const
{
    const ThemeColours& c = m_theme.colours();
    const bool isHot = isEnabled() && underMouse();
    if (m_kind == Kind::Round) {
        QColor disc = isEnabled() ? c.text : c.line;
        if (isEnabled() && (isHot || isDown()))
            disc.setAlphaF(isDown() ? 0.75F : 0.88F);
        Paint::roundedFill(painter, rect(), cornerRadius(), disc);
        return;
    }
    if (m_kind == Kind::Accent) {
        if (!isEnabled()) {
            Paint::card(painter, rect(), Metrics::kRadius, c.raised, c.line);
            return;
        }
        Paint::roundedFill(painter, rect(), Metrics::kRadius, c.accent);
        QColor veil = c.accentText;
        veil.setAlphaF(static_cast<float>(isDown() ? 2 * kLighter : isHot ? kLighter : 0));
        Paint::roundedFill(painter, rect(), Metrics::kRadius, veil);
        return;
    }
    if (m_kind == Kind::Plain)
        Paint::card(painter, rect(), Metrics::kRadius, c.raised, c.line);
    if (m_kind != Kind::Link && (isHot || isDown()))
        Paint::roundedFill(painter, rect(), Metrics::kRadius, isDown() ? c.pressed : c.hover);
}

void ThemeButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintBackground(painter);
    const QColor colour = textColour();
    int textWidth = QFontMetrics(labelFont()).horizontalAdvance(text());
    const bool hasIcon = !m_iconName.isEmpty();
    const int gap = hasIcon && textWidth > 0 ? kIconGap : 0;
    int x = (width() - textWidth - gap - (hasIcon ? kIconSide : 0)) / 2;
    if (hasIcon) {
        const int alone = m_kind == Kind::Round ? kRoundIcon : Metrics::kIcon;
        const int side = textWidth > 0 ? kIconSide : alone;
        x = textWidth > 0 ? x : (width() - side) / 2;
        Icons::paint(painter, {x, (height() - side) / 2, side, side}, m_iconName,
                     m_iconColour.isValid() && isEnabled() ? m_iconColour : colour);
        x += side + gap;
    }
    painter.setFont(labelFont());
    painter.setPen(colour);
    painter.drawText(QRect(x, 0, textWidth + 1, height()), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     text());
    if (m_kind == Kind::Link && underMouse())
        painter.fillRect(x, height() / 2 + Metrics::kSpace2, textWidth, Metrics::kHairline, colour);
    if (m_isBusy)
        paintBusyRing(painter);
    if (hasFocus())
        Paint::focusRing(painter, rect(), cornerRadius() - Metrics::kFocusWidth / 2.0,
                         m_kind == Kind::Accent ? m_theme.colours().text : m_theme.colours().accent);
}

void ThemeButton::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void ThemeButton::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

void ThemeButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
