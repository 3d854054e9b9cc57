#include "ui/player/VolumeSlider.h"

#include "playback/AudioPlayer.h"
#include "ui/theme/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>

namespace {
constexpr int kLength = 120;
constexpr int kBreadth = 24;
constexpr int kPixelsPerStep = 16; // of a touchpad; chosen so that a swipe does not jump from silent to loud
} // namespace

VolumeSlider::VolumeSlider(const Theme& theme, AudioPlayer& player, Qt::Orientation orientation, QWidget* parent)
    : ThemeSlider(theme, parent)
    , m_player(player)
    , m_wheel(kPixelsPerStep)
{
    setOrientation(orientation);
    setRange(0, 100);
    setSingleStep(kStep);
    setPageStep(2 * kStep);
    follow();
    connect(&player.volumeState(), &AudioVolumeState::valueChanged, this, &VolumeSlider::follow);
    connect(this, &QAbstractSlider::valueChanged, this, [this](int percent) {
        if (!m_isFollowing)
            m_player.setVolume(percent / 100.0);
    });
}

void VolumeSlider::follow()
{
    const QScopedValueRollback<bool> guard(m_isFollowing, true);
    setValue(static_cast<int>(std::lround(m_player.volumeState().value() * 100)));
}

QString VolumeSlider::spokenValue() const
{
    return QStringLiteral("%1 %").arg(value());
}

QSize VolumeSlider::sizeHint() const
{
    return orientation() == Qt::Horizontal ? QSize(kLength, kBreadth) : QSize(kBreadth, kLength);
}

void VolumeSlider::change(AudioPlayer& player, int steps)
{
    const int percent = static_cast<int>(std::lround(player.volumeState().value() * 100)) + steps * kStep;
    player.setVolume(std::clamp(percent, 0, 100) / 100.0);
}

void VolumeSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const double fraction = value() / 100.0;
    paintGroove(painter, fraction, theme().colours().text2, theme().colours().groove);
    paintKnob(painter, fraction);
    paintFocus(painter);
}

void VolumeSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setSliderDown(true);
    setValue(static_cast<int>(std::lround(fractionAt(event->position()) * 100)));
}

void VolumeSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown())
        setValue(static_cast<int>(std::lround(fractionAt(event->position()) * 100)));
}

void VolumeSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
}

void VolumeSlider::wheelEvent(QWheelEvent* event)
{
    if (const int steps = m_wheel.consume(*event))
        change(m_player, steps);
    event->accept();
}
