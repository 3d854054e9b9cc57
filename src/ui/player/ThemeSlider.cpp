#include "ui/player/ThemeSlider.h"

#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QAccessibleWidget>

namespace {

/// What the toolkit's own slider offers to assistive technology, with the value in words.
class SpokenSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit SpokenSlider(ThemeSlider* slider)
        : QAccessibleWidget(slider, QAccessible::Slider)
        , m_slider(*slider)
    {
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_slider.spokenValue() : QAccessibleWidget::text(kind);
    }
    QVariant currentValue() const override { return m_slider.value(); }
    void setCurrentValue(const QVariant& value) override { m_slider.setValue(value.toInt()); }
    QVariant maximumValue() const override { return m_slider.maximum(); }
    QVariant minimumValue() const override { return m_slider.minimum(); }
    QVariant minimumStepSize() const override { return m_slider.singleStep(); }

private:
    ThemeSlider& m_slider;
};

QAccessibleInterface* makeSpokenSlider(const QString&, QObject* object)
{
    auto* slider = qobject_cast<ThemeSlider*>(object);
    return slider ? new SpokenSlider(slider) : nullptr;
}

void installSpokenSlider()
{
    [[maybe_unused]] static const bool kIsInstalled = (QAccessible::installFactory(&makeSpokenSlider), true);
}

constexpr double kMargin = Metrics::kKnob / 2.0; // the knob stays inside at both ends

} // namespace

ThemeSlider::ThemeSlider(const Theme& theme, QWidget* parent)
    : QAbstractSlider(parent)
    , m_theme(theme)
{
    installSpokenSlider();
    setOrientation(Qt::Horizontal);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

double ThemeSlider::fractionAt(const QPointF& position) const
{
    const bool isUpright = orientation() == Qt::Vertical;
    const double length = (isUpright ? height() : width()) - 2 * kMargin;
    if (length <= 0)
        return 0;
    const double fraction = ((isUpright ? position.y() : position.x()) - kMargin) / length;
    return std::clamp(isUpright ? 1 - fraction : fraction, 0.0, 1.0);
}

double ThemeSlider::placeOf(double fraction) const
{
    const bool isUpright = orientation() == Qt::Vertical;
    const double length = std::max(0.0, (isUpright ? height() : width()) - 2 * kMargin);
    return kMargin + (isUpright ? 1 - fraction : fraction) * length;
}

void ThemeSlider::paintGroove(QPainter& painter, double fraction, const QColor& filled, const QColor& ground) const
{
    constexpr double kThick = Metrics::kProgressThickness;
    const double place = placeOf(fraction);
    const auto bar = [&](double from, double to) {
        return orientation() == Qt::Vertical ? QRectF((width() - kThick) / 2, from, kThick, to - from)
                                             : QRectF(from, (height() - kThick) / 2, to - from, kThick);
    };
    Paint::roundedFill(
        painter, bar(placeOf(orientation() == Qt::Vertical ? 1 : 0), placeOf(orientation() == Qt::Vertical ? 0 : 1)),
        kThick / 2, ground);
    if (fraction > 0)
        Paint::roundedFill(painter, orientation() == Qt::Vertical ? bar(place, placeOf(0)) : bar(placeOf(0), place),
                           kThick / 2, filled);
}

void ThemeSlider::paintKnob(QPainter& painter, double fraction) const
{
    const double place = placeOf(fraction);
    const QPointF centre =
        orientation() == Qt::Vertical ? QPointF(width() / 2.0, place) : QPointF(place, height() / 2.0);
    const QRectF knob(centre - QPointF(kMargin, kMargin), QSizeF(Metrics::kKnob, Metrics::kKnob));
    const ThemeColours& c = m_theme.colours();
    Paint::roundedFill(painter, knob, kMargin, isEnabled() ? c.text : c.text3);
}

void ThemeSlider::paintFocus(QPainter& painter) const
{
    if (hasFocus())
        Paint::focusRing(painter, rect(), Metrics::kRadiusSmall, m_theme.colours().accent);
}
