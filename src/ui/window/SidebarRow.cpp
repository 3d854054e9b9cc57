#include "ui/window/SidebarRow.h"

#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QKeyEvent>

namespace {
constexpr int kIconLeft = 10;
constexpr int kLabelLeft = 38;
constexpr int kCountRight = 10;
} // namespace

SidebarRow::SidebarRow(const Theme& theme, const QString& iconName, QWidget* parent)
    : QAbstractButton(parent)
    , m_theme(theme)
    , m_iconName(iconName)
{
    setFocusPolicy(Qt::TabFocus);
    setFixedHeight(Metrics::kSidebarRowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SidebarRow::setLabel(const QString& label, const QString& hotkey)
{
    m_label = label;
    m_hotkey = hotkey;
    describe();
}

void SidebarRow::setCount(qint64 count)
{
    if (std::exchange(m_count, count) != count)
        describe();
}

void SidebarRow::setCollapsed(bool collapsed)
{
    m_isCollapsed = collapsed;
    describe();
}

void SidebarRow::setDropHighlighted(bool isOn)
{
    m_isDropHighlighted = isOn;
    update();
}

void SidebarRow::describe()
{
    setAccessibleName(m_label);
    setAccessibleDescription(m_count > 0 ? Texts::number(m_count) : QString());
    const QString tip = m_hotkey.isEmpty() ? m_label : QStringLiteral("%1 (%2)").arg(m_label, m_hotkey);
    setToolTip(m_isCollapsed ? tip : m_hotkey);
    update();
}

QSize SidebarRow::sizeHint() const
{
    return {Metrics::kSidebarCollapsedWidth - 2 * Metrics::kSpace3, Metrics::kSidebarRowHeight};
}

void SidebarRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_theme.colours();
    if (isChecked() || m_isDropHighlighted)
        Paint::roundedFill(painter, rect(), Metrics::kRadius, c.selection);
    else if (underMouse())
        Paint::roundedFill(painter, rect(), Metrics::kRadius, c.hover);
    if (m_isDropHighlighted || hasFocus())
        Paint::focusRing(painter, rect(), Metrics::kRadius, c.accent);

    const int iconTop = (height() - Metrics::kIcon) / 2;
    const int iconLeft = m_isCollapsed ? (width() - Metrics::kIcon) / 2 : kIconLeft;
    Icons::paint(painter, {iconLeft, iconTop, Metrics::kIcon, Metrics::kIcon}, m_iconName,
                 isChecked() ? c.accent : c.text2);
    if (m_isCollapsed)
        return;
    int right = width() - kCountRight;
    if (m_count > 0)
        right = Paint::number(painter, {0, 0, right, height()}, Texts::number(m_count),
                              m_theme.font(TextRole::Secondary), c.text3);
    Paint::line(painter, {kLabelLeft, 0, right - kLabelLeft - Metrics::kSpace2, height()}, m_label,
                m_theme.font(TextRole::BodyStrong), isChecked() ? c.text : c.text2);
}

void SidebarRow::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void SidebarRow::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

void SidebarRow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
