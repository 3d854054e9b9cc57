#include "ui/keys/KeyWheel.h"

#include "ui/cells/KeyCells.h"
#include "ui/cells/KeyTexts.h"
#include "ui/keys/KeyWheelGeometry.h"
#include "ui/text/Texts.h"
#include "ui/theme/KeyColours.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <cmath>

namespace {

constexpr int kHighestNumber = 12;
constexpr int kPreferredSide = 372;
constexpr int kSmallestSide = 200;
constexpr double kGap = 3;
constexpr double kOutline = 3;
constexpr double kDimShare = 0.1;      // of the colour of a key that no row has
constexpr double kPresentShare = 0.24; // of one that some rows have
constexpr double kHoverShare = 0.12;   // on top, of text

MusicalKey keyAtPlace(int number, MusicalKeyMode mode)
{
    return *MusicalKey::fromCamelotCode(QString::number(number) + QChar(mode == MusicalKeyMode::Minor ? u'A' : u'B'));
}

QFont sized(const QFont& font, double pixels)
{
    QFont result(font);
    result.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    return result;
}

} // namespace

KeyWheel::KeyWheel(const Theme& theme, QWidget* parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_cursor(keyAtPlace(kHighestNumber, MusicalKeyMode::Major))
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMinimumSize(kSmallestSide, kSmallestSide);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    retranslate();
}

QSize KeyWheel::sizeHint() const
{
    return {kPreferredSide, kPreferredSide};
}

void KeyWheel::setKey(const std::optional<MusicalKey>& key, const QString& words)
{
    if (key == m_key && words == m_words)
        return;
    if (key && key != m_key) // else the keyboard would lose its place whenever another row is done
        m_cursor = *key;
    m_key = key;
    m_words = words;
    retranslate();
    update();
}

void KeyWheel::setCounts(const QHash<QString, int>& counts)
{
    if (counts == m_counts)
        return;
    m_counts = counts;
    retranslate();
    update();
}

void KeyWheel::retranslate()
{
    setAccessibleName(Texts::localized(QStringLiteral("Круг Camelot")));
    setAccessibleDescription(describe(m_cursor));
}

QString KeyWheel::describe(const MusicalKey& key) const
{
    const int count = m_counts.value(key.camelot());
    return Texts::facts({key.camelot(), KeyTexts::name(key), count > 0 ? Texts::trackCount(count) : QString()});
}

/// The wheel stands at the top, in the middle of the width.
QRectF KeyWheel::square() const
{
    const int side = std::min({width(), height(), kPreferredSide});
    return {(width() - side) / 2.0, 0, static_cast<double>(side), static_cast<double>(side)};
}

KeyWheelGeometry KeyWheel::geometryOfWheel() const
{
    return KeyWheelGeometry(square().width());
}

std::optional<MusicalKey> KeyWheel::keyAt(const QPointF& position) const
{
    return geometryOfWheel().keyAt(position - square().topLeft());
}

bool KeyWheel::isLit(const MusicalKey& key) const
{
    return m_key && (key == *m_key || KeyTexts::compatible(*m_key).contains(key));
}

QColor KeyWheel::fillOf(const MusicalKey& key) const
{
    const ThemeColours& c = m_theme.colours();
    const bool isPresent = m_counts.value(key.camelot()) > 0;
    const double share = isLit(key) ? 1 : isPresent ? kPresentShare : kDimShare;
    const QColor fill = KeyCells::mixed(KeyColours::colour(key), c.surface, share);
    return m_hovered == key ? KeyCells::mixed(c.text, fill, kHoverShare) : fill;
}

void KeyWheel::paintSegment(QPainter& painter, const KeyWheelGeometry& geometry, const MusicalKey& key) const
{
    const ThemeColours& c = m_theme.colours();
    const QColor fill = fillOf(key);
    painter.setBrush(fill);
    painter.setPen(QPen(c.surface, kGap, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawPath(geometry.segment(key));
    const double side = square().width();
    const double pixels = side / kPreferredSide * (key.mode == MusicalKeyMode::Major ? 16 : 14);
    painter.setFont(sized(m_theme.font(TextRole::BodyStrong), std::max(pixels, 10.0)));
    const bool isPresent = m_counts.value(key.camelot()) > 0;
    painter.setPen(isLit(key) ? KeyCells::textOn(fill, c) : isPresent ? c.text2 : c.text3);
    const QPointF centre = geometry.labelCentre(key);
    const QRectF label(centre.x() - side / 8, centre.y() - side / 16, side / 4, side / 8);
    painter.drawText(label, Qt::AlignCenter, key.camelot());
}

void KeyWheel::paintMiddle(QPainter& painter, const KeyWheelGeometry& geometry) const
{
    if (!m_key && m_words.isEmpty())
        return;
    const ThemeColours& c = m_theme.colours();
    const double radius = geometry.innerRadius();
    const QPointF centre = geometry.centre();
    painter.setPen(c.text);
    painter.setFont(sized(m_theme.font(TextRole::Title), radius * 0.46));
    const QRectF code(centre.x() - radius, centre.y() - radius * 0.52, 2 * radius, radius * 0.6);
    painter.drawText(code, Qt::AlignCenter, m_key ? m_key->camelot() : QStringLiteral("—"));
    const QFont font = sized(m_theme.font(TextRole::Secondary), std::max(10.0, radius * 0.2));
    const QRectF words(centre.x() - radius * 0.86, centre.y() + radius * 0.1, radius * 1.72, radius * 0.5);
    painter.setFont(font);
    painter.setPen(c.text2);
    painter.drawText(words, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                     m_key ? KeyTexts::name(*m_key) : m_words);
}

void KeyWheel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square().topLeft());
    const KeyWheelGeometry geometry = geometryOfWheel();
    for (const MusicalKeyMode mode : {MusicalKeyMode::Minor, MusicalKeyMode::Major}) {
        for (int number = 1; number <= kHighestNumber; ++number)
            paintSegment(painter, geometry, keyAtPlace(number, mode));
    }
    painter.setBrush(Qt::NoBrush);
    const auto outline = [&](const MusicalKey& key, const QColor& colour) {
        painter.setPen(QPen(colour, kOutline, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawPath(geometry.segment(key));
    };
    if (m_key)
        outline(*m_key, m_theme.colours().text);
    if (hasFocus())
        outline(m_cursor, m_theme.colours().accent);
    paintMiddle(painter, geometry);
}

void KeyWheel::setHovered(const std::optional<MusicalKey>& key)
{
    if (m_hovered == key)
        return;
    m_hovered = key;
    const bool leads = key && m_counts.value(key->camelot()) > 0;
    setCursor(leads ? Qt::PointingHandCursor : Qt::ArrowCursor);
    update();
}

void KeyWheel::mouseMoveEvent(QMouseEvent* event)
{
    setHovered(keyAt(event->position()));
}

void KeyWheel::leaveEvent(QEvent* event)
{
    setHovered(std::nullopt);
    QWidget::leaveEvent(event);
}

void KeyWheel::mousePressEvent(QMouseEvent* event)
{
    const std::optional<MusicalKey> key = keyAt(event->position());
    if (event->button() == Qt::LeftButton && key)
        emit keyChosen(*key);
}

void KeyWheel::moveCursor(int steps)
{
    const int number = (m_cursor.camelotNumber() - 1 + steps + kHighestNumber) % kHighestNumber + 1;
    m_cursor = keyAtPlace(number, m_cursor.mode);
}

void KeyWheel::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        moveCursor(-1);
        break;
    case Qt::Key_Right:
        moveCursor(1);
        break;
    case Qt::Key_Up:
        m_cursor = keyAtPlace(m_cursor.camelotNumber(), MusicalKeyMode::Major);
        break;
    case Qt::Key_Down:
        m_cursor = keyAtPlace(m_cursor.camelotNumber(), MusicalKeyMode::Minor);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        emit keyChosen(m_cursor);
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    retranslate();
    update();
}

void KeyWheel::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    update();
}

bool KeyWheel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const std::optional<MusicalKey> key = keyAt(help->pos());
        QToolTip::showText(help->globalPos(), key ? describe(*key) : QString(), this);
        return true;
    }
    return QWidget::event(event);
}
