#include "ui/player/VolumeControl.h"

#include "playback/AudioPlayer.h"
#include "ui/controls/ThemeButton.h"
#include "ui/player/VolumeSlider.h"
#include "ui/text/Texts.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QPainter>
#include <QWheelEvent>

namespace {

constexpr int kSliderWidth = 116;
constexpr int kPopupWidth = 36;
constexpr int kPopupHeight = 148;
constexpr int kClosingMilliseconds = 250; // for the way of the pointer from the button to the slider
constexpr double kDefaultVolume = 0.8;    // what a program that was left mute comes back to
constexpr float kLow = 0.5F;

/// The frame of the upright slider.
class VolumePopup final : public QWidget {
public:
    VolumePopup(const Theme& theme, QWidget* parent)
        : QWidget(parent)
        , m_theme(theme)
    {
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        Paint::card(painter, rect(), Metrics::kRadius, m_theme.colours().raised, m_theme.colours().line);
    }

private:
    const Theme& m_theme;
};

} // namespace

VolumeControl::VolumeControl(const WindowContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_speaker(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
    , m_slider(new VolumeSlider(context.theme, context.player, Qt::Horizontal, this))
    , m_popup(new VolumePopup(context.theme, window()))
    , m_upright(new VolumeSlider(context.theme, context.player, Qt::Vertical, m_popup))
    , m_audible(kDefaultVolume)
{
    m_popup->setFixedSize(kPopupWidth, kPopupHeight);
    m_popup->hide();
    m_upright->setGeometry(
        m_popup->rect().adjusted(Metrics::kStep, Metrics::kSpace2, -Metrics::kStep, -Metrics::kSpace2));
    connect(m_speaker, &QAbstractButton::clicked, this, &VolumeControl::toggleMute);
    for (QWidget* each : {static_cast<QWidget*>(m_speaker), m_popup, static_cast<QWidget*>(m_upright)})
        each->installEventFilter(this);
    connect(&context.player.volumeState(), &AudioVolumeState::valueChanged, this, &VolumeControl::volumeChanged);
    for (VolumeSlider* each : {m_slider, m_upright})
        connect(each, &QAbstractSlider::sliderReleased, this, &VolumeControl::volumeChanged);
    volumeChanged();
}

void VolumeControl::toggleMute()
{
    const bool isMuted = m_context.player.volumeState().value() <= 0;
    m_context.player.setVolume(isMuted ? m_audible : 0.0);
}

void VolumeControl::volumeChanged()
{
    const float value = m_context.player.volumeState().value();
    const bool isHeld = m_slider->isSliderDown() || m_upright->isSliderDown();
    if (value > 0 && !isHeld) // a drag to silence passes by values that nobody chose
        m_audible = value;
    retranslate();
}

void VolumeControl::retranslate()
{
    const float value = m_context.player.volumeState().value();
    const bool isMuted = value <= 0;
    const QString icon = isMuted        ? QStringLiteral("speaker-muted")
                         : value < kLow ? QStringLiteral("speaker-low")
                                        : QStringLiteral("speaker-high");
    m_speaker->setIconOnly(
        icon, Texts::localized(isMuted ? QStringLiteral("Включить звук") : QStringLiteral("Выключить звук")),
        QStringLiteral("M"));
    for (VolumeSlider* each : {m_slider, m_upright}) {
        each->setAccessibleName(Texts::localized(QStringLiteral("Громкость")));
        each->setToolTip(QStringLiteral("%1: %2").arg(each->accessibleName(), each->spokenValue()));
    }
}

int VolumeControl::widthFor(bool isWide)
{
    return Metrics::kButtonHeight + (isWide ? Metrics::kStep + kSliderWidth : 0);
}

void VolumeControl::setWide(bool isWide)
{
    m_isWide = isWide;
    m_slider->setVisible(isWide);
    if (isWide)
        m_popup->hide();
}

void VolumeControl::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const QSize button = m_speaker->sizeHint();
    m_speaker->setGeometry(0, (height() - button.height()) / 2, button.width(), button.height());
    const int breadth = m_slider->sizeHint().height();
    m_slider->setGeometry(button.width() + Metrics::kStep, (height() - breadth) / 2, kSliderWidth, breadth);
}

void VolumeControl::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_popup->hide();
}

bool VolumeControl::isPopupWanted() const
{
    return m_speaker->underMouse() || m_popup->underMouse() || m_upright->isSliderDown() || m_speaker->hasFocus() ||
           m_upright->hasFocus();
}

void VolumeControl::openPopup()
{
    m_closing.stop();
    if (m_isWide || m_popup->isVisible())
        return;
    const QPoint top = m_speaker->mapTo(window(), QPoint((m_speaker->width() - kPopupWidth) / 2, 0));
    const int above = top.y() - kPopupHeight - Metrics::kStep;
    const int below = top.y() + m_speaker->height() + Metrics::kStep;
    m_popup->move(top.x(), above >= 0 ? above : below);
    m_popup->raise();
    m_popup->show();
}

bool VolumeControl::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
        openPopup();
        break;
    case QEvent::FocusIn:
        if (static_cast<QFocusEvent*>(event)->reason() != Qt::MouseFocusReason)
            openPopup();
        break;
    case QEvent::Leave:
    case QEvent::FocusOut:
    case QEvent::MouseButtonRelease:
        if (m_popup->isVisible())
            m_closing.start(kClosingMilliseconds, this);
        break;
    case QEvent::Wheel:
        if (watched == m_speaker) { // the button stands for the slider
            QCoreApplication::sendEvent(m_slider, event);
            return true;
        }
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void VolumeControl::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_closing.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_closing.stop();
    m_popup->setVisible(isPopupWanted() && !m_isWide);
}
