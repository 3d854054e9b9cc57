#include "ui/theme/VelmoraStyle.h"

#include "ui/theme/Metrics.h"
#include "ui/theme/Paint.h"

#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>

namespace {
constexpr int kMenuTextLeft = 34; // room for the check mark
constexpr int kMenuPadding = 6;
constexpr int kSeparatorHeight = 9;
constexpr int kMinimumThumb = 36;
} // namespace

VelmoraStyle::VelmoraStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{
}

void VelmoraStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QMenu*>(widget)) {
        widget->setWindowFlag(Qt::FramelessWindowHint);
        widget->setWindowFlag(Qt::NoDropShadowWindowHint);
        widget->setAttribute(Qt::WA_TranslucentBackground);
    }
}

int VelmoraStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
        return Metrics::kScrollBar;
    case PM_ScrollBarSliderMin:
        return kMinimumThumb;
    case PM_MenuPanelWidth:
        return 0;
    case PM_MenuVMargin:
    case PM_MenuHMargin:
        return kMenuPadding;
    case PM_ScrollView_ScrollBarOverlap:
    case PM_ScrollView_ScrollBarSpacing:
    case PM_DefaultFrameWidth:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_ToolTipLabelFrameWidth:
        return Metrics::kStep;
    case PM_FocusFrameHMargin:
    case PM_FocusFrameVMargin:
        return Metrics::kFocusWidth;
    case PM_SmallIconSize:
        return Metrics::kIcon;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int VelmoraStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const
{
    switch (hint) {
    case SH_ScrollBar_LeftClickAbsolutePosition:
    case SH_Menu_MouseTracking:
    case SH_Menu_SloppySubMenus:
        return 1;
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_DrawMenuBarSeparator:
    case SH_EtchDisabledText:
    case SH_ScrollBar_Transient:
    case SH_Widget_Animate:
    case SH_Widget_Animation_Duration:
    case SH_UnderlineShortcut:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
}

QSize VelmoraStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                     const QWidget* widget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (type != CT_MenuItem)
        return result;
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (item && item->menuItemType == QStyleOptionMenuItem::Separator)
        return {result.width(), kSeparatorHeight};
    const int iconWidth = item && !item->icon.isNull() ? Metrics::kIconSmall + Metrics::kSpace3 : 0;
    return {result.width() + kMenuTextLeft + iconWidth, Metrics::kMenuRowHeight};
}

QRect VelmoraStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                   const QWidget* widget) const
{
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || !slider)
        return QProxyStyle::subControlRect(control, option, part, widget);

    // No arrow buttons: the groove is the whole bar.
    const bool horizontal = slider->orientation == Qt::Horizontal;
    const int length = horizontal ? slider->rect.width() : slider->rect.height();
    const qint64 range = qint64(slider->maximum) - slider->minimum;
    int thumb = length;
    if (range > 0) {
        thumb = static_cast<int>(qint64(slider->pageStep) * length / (range + slider->pageStep));
        thumb = std::clamp(thumb, std::min(kMinimumThumb, length), length);
    }
    const int start = sliderPositionFromValue(slider->minimum, slider->maximum, slider->sliderPosition, length - thumb,
                                              slider->upsideDown);
    const auto span = [&](int from, int to) {
        return horizontal ? QRect(from, 0, to - from, slider->rect.height())
                          : QRect(0, from, slider->rect.width(), to - from);
    };
    switch (part) {
    case SC_ScrollBarGroove:
        return span(0, length);
    case SC_ScrollBarSlider:
        return span(start, start + thumb);
    case SC_ScrollBarSubPage:
        return span(0, start);
    case SC_ScrollBarAddPage:
        return span(start + thumb, length);
    default:
        return {};
    }
}

void VelmoraStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    switch (element) {
    case PE_FrameFocusRect:
        Paint::focusRing(*painter, option->rect, Metrics::kRadius, m_colours.accent);
        return;
    case PE_PanelMenu:
    case PE_FrameMenu:
        Paint::card(*painter, option->rect, Metrics::kRadius, m_colours.raised, m_colours.line);
        return;
    case PE_PanelTipLabel:
        painter->fillRect(option->rect, m_colours.raised);
        Paint::frame(*painter, option->rect, m_colours.line);
        return;
    case PE_PanelItemViewRow: // rows draw their own selection
    case PE_PanelItemViewItem:
    case PE_Frame:
    case PE_PanelScrollAreaCorner:
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void VelmoraStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const
{
    if (element == CE_MenuItem) {
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            drawMenuItem(*item, *painter);
            return;
        }
    }
    if (element == CE_MenuEmptyArea)
        return;
    QProxyStyle::drawControl(element, option, painter, widget);
}

void VelmoraStyle::drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter) const
{
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        const int y = option.rect.center().y();
        painter.fillRect(option.rect.left(), y, option.rect.width(), Metrics::kHairline, m_colours.line);
        return;
    }
    const bool enabled = option.state.testFlag(State_Enabled);
    const bool active = enabled && option.state.testFlag(State_Selected);
    if (active)
        Paint::roundedFill(painter, option.rect, Metrics::kRadiusSmall, m_colours.accent);
    const QColor text = active ? m_colours.accentText : enabled ? m_colours.text : m_colours.text3;
    const QColor hint = active ? m_colours.accentText : m_colours.text3;

    const QRect row = option.rect.adjusted(0, 0, -Metrics::kSpace3, 0);
    if (option.checked)
        Paint::checkMark(painter, QRect(row.left(), row.top(), kMenuTextLeft, row.height()), text);
    const QStringList parts = option.text.split(u'\t');
    painter.setFont(option.font);
    painter.setPen(text);
    const QRect textRect = row.adjusted(kMenuTextLeft, 0, 0, 0);
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextHideMnemonic | Qt::TextSingleLine, parts[0]);
    painter.setPen(hint);
    if (!option.icon.isNull()) {
        constexpr int kIcon = Metrics::kIconSmall;
        const QRect place(row.right() - kIcon, row.top() + (row.height() - kIcon) / 2, kIcon, kIcon);
        option.icon.paint(&painter, place, Qt::AlignCenter, active ? QIcon::Selected : QIcon::Normal);
    }
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
        Paint::chevronRight(painter, row, hint);
    else if (parts.size() > 1)
        painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignRight, parts[1]);
}

void VelmoraStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const
{
    if (control == CC_ScrollBar) {
        if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            drawScrollBar(*slider, *painter, widget);
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void VelmoraStyle::drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const
{
    painter.fillRect(option.rect, widget ? widget->palette().color(QPalette::Base) : m_colours.background);
    if (option.maximum <= option.minimum)
        return;
    QRect thumb = proxy()->subControlRect(CC_ScrollBar, &option, SC_ScrollBarSlider, widget).adjusted(2, 2, -2, -2);
    const bool lively = option.state.testFlag(State_MouseOver) || option.state.testFlag(State_Sunken);
    QColor colour = m_colours.text3;
    colour.setAlphaF(lively ? 0.9F : 0.5F);
    Paint::roundedFill(painter, thumb, std::min(thumb.width(), thumb.height()) / 2.0, colour);
}
