#include "ui/inspector/CoverWell.h"

#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Motion.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/CoverPaint.h"
#include "ui/thumbnails/ThumbnailCache.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QTimerEvent>

namespace {
constexpr int kStackStep = 7; // by which a cover behind looks out
constexpr int kSmallStackStep = 4;
constexpr double kRingWidth = 2.5;
constexpr int kRingSpan = 270; // degrees
constexpr int kRingStep = 12;  // degrees, about one turn in a second and a half
constexpr int kRingPause = 50; // milliseconds
} // namespace

CoverWell::CoverWell(const WindowContext& context, QWidget* parent)
    : QAbstractButton(parent)
    , m_context(context)
{
    setFixedSize(kSide, kSide);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    connect(this, &QAbstractButton::clicked, this, &CoverWell::choose);
    connect(&context.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    connect(&context.thumbnails, &ThumbnailCache::ready, this, qOverload<>(&QWidget::update));
    retranslate();
}

void CoverWell::setSmall(bool isSmall)
{
    const int side = isSmall ? kSmallSide : kSide;
    setFixedSize(side, side);
}

void CoverWell::setCovers(const QList<Track>& covers)
{
    m_covers = covers;
    update();
}

void CoverWell::setMode(Mode mode)
{
    m_mode = mode;
    if (mode != Mode::Open)
        setHighlighted(false);
    if (mode != Mode::Writing || Motion::isReduced())
        m_turning.stop();
    else if (!m_turning.isActive())
        m_turning.start(kRingPause, this);
    update();
}

void CoverWell::setHint(const QString& hint)
{
    setToolTip(hint);
    setAccessibleDescription(hint);
}

void CoverWell::retranslate()
{
    setAccessibleName(Texts::localized(QStringLiteral("Обложка")));
}

void CoverWell::take(const std::optional<PictureSource>& offer)
{
    if (!offer)
        return;
    if (m_mode == Mode::Open)
        emit offered(*offer);
    else if (m_mode == Mode::Writing)
        emit refused();
}

void CoverWell::choose()
{
    if (m_mode == Mode::Open)
        emit chooseWanted();
    else if (m_mode == Mode::Writing)
        emit refused();
}

void CoverWell::paste()
{
    if (const QMimeData* data = QGuiApplication::clipboard()->mimeData())
        take(PictureSources::pictureOf(*data));
}

void CoverWell::setHighlighted(bool isOn)
{
    m_isHighlighted = isOn;
    update();
}

void CoverWell::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Paste))
        paste();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void CoverWell::contextMenuEvent(QContextMenuEvent* event)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* choose = menu->addAction(Texts::localized(QStringLiteral("Выбрать изображение…")));
    QAction* insert =
        menu->addAction(Texts::localized(QStringLiteral("Вставить изображение")) + QStringLiteral("\tCtrl+V"));
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    choose->setEnabled(m_mode == Mode::Open);
    insert->setEnabled(m_mode == Mode::Open && data && PictureSources::hasPicture(*data));
    connect(choose, &QAction::triggered, this, &CoverWell::choose);
    connect(insert, &QAction::triggered, this, &CoverWell::paste);
    menu->popup(event->globalPos());
}

void CoverWell::dragEnterEvent(QDragEnterEvent* event)
{
    const bool isPicture = PictureSources::hasPicture(*event->mimeData());
    if (isPicture && m_mode == Mode::Writing)
        emit refused();
    setHighlighted(isPicture && m_mode == Mode::Open);
    if (!m_isHighlighted) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void CoverWell::dragLeaveEvent(QDragLeaveEvent*)
{
    setHighlighted(false);
}

void CoverWell::dropEvent(QDropEvent* event)
{
    setHighlighted(false);
    const std::optional<PictureSource> offer = PictureSources::pictureOf(*event->mimeData());
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(offer && m_mode == Mode::Open);
    take(offer);
}

void CoverWell::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void CoverWell::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

void CoverWell::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintCovers(painter);
    paintVeil(painter);
    const ThemeColours& c = m_context.theme.colours();
    if (m_isHighlighted)
        Paint::roundedFill(painter, rect(), Metrics::kRadiusLarge, c.selection);
    if (m_isHighlighted || hasFocus())
        Paint::focusRing(painter, rect(), Metrics::kRadiusLarge, c.accent);
}

int CoverWell::stackStep() const
{
    return width() < kSide ? kSmallStackStep : kStackStep;
}

/// Where a cover of the stack lies; 0 is in front.
QRect CoverWell::square(int place) const
{
    const int behind = std::max(0, static_cast<int>(m_covers.size()) - 1);
    const int side = width() - behind * stackStep();
    return {place * stackStep(), (behind - place) * stackStep(), side, side};
}

void CoverWell::paintCovers(QPainter& painter) const
{
    const int behind = std::max(0, static_cast<int>(m_covers.size()) - 1);
    const ThemeColours& c = m_context.theme.colours();
    for (int place = behind; place >= 0; --place) {
        const Track* track = m_covers.isEmpty() ? nullptr : &m_covers[place];
        if (behind > 0) // a rim in the panel's colour sets the covers apart
            Paint::roundedFill(painter, square(place).adjusted(-2, -2, 2, 2), Metrics::kRadiusLarge + 2, c.surface);
        CoverPaint::paint(painter, m_context, square(place), Metrics::kRadiusLarge, track);
    }
}

void CoverWell::paintVeil(QPainter& painter) const
{
    const ThemeColours& c = m_context.theme.colours();
    const bool isWriting = m_mode == Mode::Writing;
    if (!isWriting && !(m_mode == Mode::Open && underMouse()))
        return;
    const QRect front = square(0);
    Paint::roundedFill(painter, front, Metrics::kRadiusLarge, c.coverVeil);
    const int icon = Metrics::kSpace6;
    const bool isSmall = width() < kSide; // then there is no room for words
    QRect glyph(0, 0, icon, icon);
    glyph.moveCenter(front.center() - QPoint(0, isSmall ? 0 : icon / 2));
    if (isWriting)
        paintRing(painter, glyph);
    else
        Icons::paint(painter, glyph, QStringLiteral("picture"), c.coverGlyph);
    if (isSmall)
        return;
    const QRect words(front.left(), front.center().y() + Metrics::kSpace2, front.width(), icon);
    Paint::line(painter, words,
                Texts::localized(isWriting ? QStringLiteral("Сохраняется…") : QStringLiteral("Заменить…")),
                m_context.theme.font(TextRole::SecondaryStrong), c.coverGlyph, Qt::AlignHCenter);
}

void CoverWell::paintRing(QPainter& painter, const QRect& glyph) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(m_context.theme.colours().coverGlyph, kRingWidth, Qt::SolidLine, Qt::RoundCap);
    painter.setPen(pen);
    painter.drawArc(QRectF(glyph).adjusted(kRingWidth, kRingWidth, -kRingWidth, -kRingWidth), -m_angle * 16,
                    kRingSpan * 16);
    painter.restore();
}

void CoverWell::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_turning.timerId()) {
        QAbstractButton::timerEvent(event);
        return;
    }
    m_angle = (m_angle + kRingStep) % 360;
    update();
}
