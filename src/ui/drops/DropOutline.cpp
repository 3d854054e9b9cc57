#include "ui/drops/DropOutline.h"

#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QEvent>

DropOutline::DropOutline(const Theme& theme, QWidget& area)
    : QWidget(&area)
    , m_theme(theme)
    , m_area(area)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    area.installEventFilter(this);
}

bool DropOutline::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(m_area.rect());
    return QWidget::eventFilter(watched, event);
}

void DropOutline::showEvent(QShowEvent* event)
{
    setGeometry(m_area.rect());
    raise();
    QWidget::showEvent(event);
}

void DropOutline::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_theme.colours();
    const QRectF inner = QRectF(rect()).adjusted(Metrics::kStep, Metrics::kStep, -Metrics::kStep, -Metrics::kStep);
    Paint::roundedFill(painter, inner, Metrics::kRadiusLarge, c.selection);
    Paint::focusRing(painter, inner, Metrics::kRadiusLarge, c.accent);
}
