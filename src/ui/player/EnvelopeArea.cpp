#include "ui/player/EnvelopeArea.h"

#include "core/library/LibraryStore.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"
#include "ui/player/VolumeSlider.h"
#include "ui/text/Texts.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>

#include <cmath>

namespace {
constexpr int kHeight = 72;
constexpr int kPreferredWidth = 320;
constexpr int kBubbleHeight = 18;
constexpr int kBubblePadding = 6;
constexpr int kPixelsPerStep = 8; // of a touchpad; one step of the volume
constexpr int kMargin = Metrics::kKnob / 2;
constexpr int kCursorWidth = 2;
constexpr int kCursorReach = 2;     // beyond the waveform, above and below
constexpr double kSlowestRate = 30; // frames a second, for screens that tell nonsense
constexpr double kFastestRate = 240;
} // namespace

EnvelopeArea::EnvelopeArea(const WindowContext& context, QWidget* parent)
    : ThemeSlider(context.theme, parent)
    , m_context(context)
    , m_waveform(new BarWaveform(context, *this))
    , m_wheel(kPixelsPerStep)
{
    setMouseTracking(true);
    setMinimumHeight(kHeight);
    AudioPlayer& player = context.player;
    connect(&player.progress(), &AudioPlaybackProgress::currentTimeChanged, this, &EnvelopeArea::follow);
    connect(&player.progress(), &AudioPlaybackProgress::durationChanged, this, &EnvelopeArea::follow);
    connect(&player, &AudioPlayer::currentTrackChanged, this, [this] {
        letGo(); // the hand held a place in another track
        follow();
    });
    connect(&player, &AudioPlayer::isPlayingChanged, this, &EnvelopeArea::animate);
    connect(this, &QAbstractSlider::valueChanged, this, [this](int seconds) {
        if (!m_isFollowing) // a step of the keyboard or of assistive technology
            m_context.player.scheduleSeek(seconds, false);
    });
    follow();
}

EnvelopeArea::~EnvelopeArea()
{
    if (m_isHeld)
        m_context.player.setScrubbing(false);
}

double EnvelopeArea::duration() const
{
    return m_context.player.currentID() ? m_context.player.progress().duration() : 0;
}

double EnvelopeArea::shownTime() const
{
    return m_isHeld ? m_fraction * duration() : m_context.player.progress().currentTime();
}

QString EnvelopeArea::spokenValue() const
{
    return VelmoraLocalization::format(QStringLiteral("%@ из %@"), {Texts::position(shownTime(), duration()),
                                                                    Texts::position(duration(), duration())});
}

QSize EnvelopeArea::sizeHint() const
{
    return {kPreferredWidth, kHeight};
}

/// Takes the player's position over, which changes ten times a second while it plays.
void EnvelopeArea::follow()
{
    const double length = duration();
    if (length <= 0) // the track may have gone away under the hand
        letGo();
    {
        const QScopedValueRollback<bool> guard(m_isFollowing, true);
        setEnabled(length > 0);
        setRange(0, static_cast<int>(std::ceil(length)));
        setValue(static_cast<int>(shownTime()));
    }
    if (length <= 0)
        hover(std::nullopt);
    if (!m_isHeld && !m_context.player.isOpening())
        moveCursor(length > 0 ? m_context.player.synchronizedWaveformProgress() : 0);
    animate();
}

void EnvelopeArea::animate()
{
    const bool isNeeded = m_context.player.isPlaying() && isVisible() && !window()->isMinimized();
    if (isNeeded == m_frames.isActive())
        return;
    if (!isNeeded) {
        m_frames.stop();
        return;
    }
    const double rate = std::clamp(screen() ? screen()->refreshRate() : 0.0, kSlowestRate, kFastestRate);
    m_frames.start(static_cast<int>(1000 / rate), Qt::PreciseTimer, this);
}

void EnvelopeArea::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_frames.timerId())
        ThemeSlider::timerEvent(event);
    else if (!m_isHeld && !m_context.player.isOpening()) // until then the former track's cursor stays
        moveCursor(m_context.player.synchronizedWaveformProgress());
    if (window()->isMinimized())
        animate();
}

void EnvelopeArea::moveCursor(double fraction)
{
    const double ratio = devicePixelRatioF();
    const auto pixel = [&](double of) { return std::lround(placeOf(of) * ratio); };
    if (!std::isfinite(fraction) || fraction == m_fraction)
        return;
    if (pixel(fraction) != pixel(m_fraction))
        update(cursorStrip(m_fraction) | cursorStrip(fraction));
    m_fraction = fraction;
}

QRect EnvelopeArea::cursorStrip(double fraction) const
{
    constexpr int kReach = Metrics::kKnob / 2 + 2; // with the soft edge
    const int place = static_cast<int>(std::floor(placeOf(fraction)));
    return {place - kReach, 0, 2 * kReach + 1, height()};
}

void EnvelopeArea::hold(double fraction)
{
    moveCursor(fraction);
    m_context.player.scheduleSeek(fraction * duration(), false);
    emit heldChanged();
}

void EnvelopeArea::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || duration() <= 0 || m_context.player.isOpening())
        return;
    m_isHeld = true;
    m_context.player.setScrubbing(true);
    hold(fractionAt(event->position()));
}

void EnvelopeArea::mouseMoveEvent(QMouseEvent* event)
{
    const double fraction = fractionAt(event->position());
    if (m_isHeld && m_context.player.isOpening())
        letGo();
    if (m_isHeld)
        hold(fraction);
    hover(duration() > 0 ? std::optional(fraction) : std::nullopt);
}

void EnvelopeArea::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_isHeld)
        return;
    hold(fractionAt(event->position()));
    letGo();
    if (!rect().contains(event->position().toPoint()))
        hover(std::nullopt);
}

void EnvelopeArea::letGo()
{
    if (!std::exchange(m_isHeld, false))
        return;
    m_context.player.setScrubbing(false);
    emit heldChanged();
}

void EnvelopeArea::leaveEvent(QEvent* event)
{
    ThemeSlider::leaveEvent(event);
    if (!m_isHeld)
        hover(std::nullopt);
}

void EnvelopeArea::wheelEvent(QWheelEvent* event)
{
    event->accept();
    const auto action = waveformScrollActionFromRawValue(m_context.store.preferences().waveformScrollAction.get());
    if (action != WaveformScrollAction::Seek) {
        if (const int steps = m_wheel.consume(*event); steps != 0)
            VolumeSlider::change(m_context.player, steps);
        return;
    }
    if (const double seconds = soughtBy(*event); seconds != 0 && !m_isHeld)
        m_context.player.seek(seconds);
}

double EnvelopeArea::soughtBy(const QWheelEvent& event)
{
    using Source = WaveformScrollSeekStepper::Source;
    if (const int pixels = WheelSteps::pixels(event); pixels != 0)
        return m_seekStepper.consume(pixels, Source::Precise).value_or(0);
    // Fine wheels give many events for a click, quick ones many clicks in an event.
    const int clicks = m_wheel.consume(event);
    double seconds = 0;
    for (int click = 0; click < std::abs(clicks); ++click)
        seconds += m_seekStepper.consume(clicks, Source::Wheel).value_or(0);
    return seconds;
}

void EnvelopeArea::hover(std::optional<double> fraction)
{
    if (fraction == m_hovered)
        return;
    QRect changed;
    for (const std::optional<double>& each : {m_hovered, fraction}) {
        if (each)
            changed |= bubbleRect(*each) | cursorStrip(*each);
    }
    m_hovered = fraction;
    update(changed);
}

void EnvelopeArea::showEvent(QShowEvent* event)
{
    ThemeSlider::showEvent(event);
    // Else each step of the cursor would paint the bar behind it as well. Set here, because the style takes it from
    // every slider when it first sees it.
    setAttribute(Qt::WA_OpaquePaintEvent);
    follow();
}

void EnvelopeArea::hideEvent(QHideEvent* event)
{
    ThemeSlider::hideEvent(event);
    if (m_isHeld) { // the release would never come
        hold(m_fraction);
        letGo();
    }
    animate();
}

/// The base repaints everything at each change of the value; here the cursor's strip is enough.
void EnvelopeArea::sliderChange(SliderChange change)
{
    if (change == SliderRangeChange)
        update();
}

void EnvelopeArea::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const ThemeColours& c = theme().colours();
    painter.fillRect(event->rect(), c.surface);
    const QRect waveform = m_waveform->rect(kMargin);
    if (m_waveform->isReady())
        m_waveform->paint(painter, waveform, m_fraction);
    else
        paintGroove(painter, m_fraction, m_waveform->colours().played, m_waveform->lineColour());
    if (m_hovered) {
        const double place = placeOf(*m_hovered);
        const int reach = m_waveform->isReady() ? waveform.height() / 2 : Metrics::kSpace2;
        painter.fillRect(QRectF(place - 0.5, height() / 2.0 - reach, Metrics::kHairline, 2 * reach), c.text2);
    }
    if (duration() > 0)
        paintPosition(painter);
    if (m_hovered)
        paintBubble(painter);
    paintFocus(painter);
}

/// A line over the waveform, a knob on the thin line.
void EnvelopeArea::paintPosition(QPainter& painter) const
{
    if (!m_waveform->isReady()) {
        paintKnob(painter, m_fraction);
        return;
    }
    const QRect waveform = m_waveform->rect(kMargin);
    const QRectF cursor(placeOf(m_fraction) - kCursorWidth / 2.0, waveform.top() - kCursorReach, kCursorWidth,
                        waveform.height() + 2 * kCursorReach);
    Paint::roundedFill(painter, cursor, kCursorWidth / 2.0, theme().colours().text);
}

QRect EnvelopeArea::bubbleRect(double fraction) const
{
    const int textWidth =
        Paint::numberWidth(Texts::position(fraction * duration(), duration()), theme().font(TextRole::Chip));
    const int breadth = textWidth + 2 * kBubblePadding;
    const int left =
        std::clamp(static_cast<int>(std::lround(placeOf(fraction))) - breadth / 2, 0, std::max(0, width() - breadth));
    const int top = m_waveform->isReady() ? m_waveform->rect(kMargin).top() : height() / 2 - Metrics::kSpace2;
    return {left, std::max(0, top - kCursorReach - kBubbleHeight), breadth, kBubbleHeight};
}

void EnvelopeArea::paintBubble(QPainter& painter) const
{
    const ThemeColours& c = theme().colours();
    const QRect bubble = bubbleRect(*m_hovered);
    Paint::card(painter, bubble, Metrics::kRadiusSmall, c.raised, c.line);
    Paint::number(painter, bubble.adjusted(0, 0, -kBubblePadding, 0),
                  Texts::position(*m_hovered * duration(), duration()), theme().font(TextRole::Chip), c.text);
}
