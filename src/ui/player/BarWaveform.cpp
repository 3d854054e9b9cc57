#include "ui/player/BarWaveform.h"

#include "core/library/LibraryStore.h"
#include "platform/Preferences.h"
#include "ui/theme/Motion.h"
#include "ui/theme/Theme.h"
#include "ui/waveform/RowWaveforms.h"

#include <QPainter>
#include <QTimerEvent>
#include <QWidget>

#include <cmath>

namespace {
constexpr double kFadeSeconds = 0.1;
constexpr int kFrameMilliseconds = 16;
constexpr int kBreathFrameMilliseconds = 60; // slow enough for few frames
constexpr double kBreathSeconds = 1.8;
constexpr double kBreathDepth = 0.5; // of the way from the groove to the colour of hints
} // namespace

BarWaveform::BarWaveform(const WindowContext& context, QWidget& area)
    : QObject(&area)
    , m_context(context)
    , m_area(area)
    , m_source(context.clock, context.waveforms)
{
    Preferences& preferences = context.store.preferences();
    connect(&preferences, &Preferences::changed, this, [this, &preferences](const QString& key) {
        if (key == preferences.waveformHeight.key() || key == preferences.waveformDrawer.key() ||
            WaveformColours::isKey(preferences, key))
            m_area.update();
    });
    connect(&m_source, &BarEnvelope::changed, this, &BarWaveform::sourceChanged);
    connect(&m_source, &BarEnvelope::loaded, &context.rowWaveforms, &RowWaveforms::arrived);
}

QRect BarWaveform::rect(int margin) const
{
    const double wanted = m_context.store.preferences().waveformHeight.get(); // finite, as all preferences are
    const double room = m_area.height() - 2 * Metrics::kStep;
    const int height = static_cast<int>(std::lround(std::min(std::max(wanted, kLeastHeight), room)));
    return {margin, (m_area.height() - height) / 2, std::max(0, m_area.width() - 2 * margin), height};
}

WaveformColours BarWaveform::colours() const
{
    return WaveformColours::of(m_context.store.preferences(), m_context.theme.appearance());
}

void BarWaveform::paint(QPainter& painter, const QRect& rect, double played)
{
    const WaveformDrawer drawer = waveformDrawerFromRawValue(m_context.store.preferences().waveformDrawer.get());
    m_picture.prepare(m_source.envelope(), {drawer, rect.size(), m_area.devicePixelRatioF(), colours()});
    const double opacity = m_frames.isActive() ? std::min(1.0, elapsed() / kFadeSeconds) : 1.0;
    painter.setOpacity(opacity);
    m_picture.paint(painter, rect.topLeft(), played * rect.width());
    painter.setOpacity(1);
}

QColor BarWaveform::lineColour() const
{
    const ThemeColours& c = m_context.theme.colours();
    if (m_source.state() != BarEnvelope::State::Loading || !m_frames.isActive())
        return c.groove;
    constexpr double kPi = 3.14159265358979323846;
    const double turns = elapsed() / kBreathSeconds;
    const double share = (1 - std::cos(2 * kPi * turns)) / 2 * kBreathDepth; // begins unseen
    const auto part = [share](int to, int from) { return static_cast<int>(std::lround(from + (to - from) * share)); };
    return {part(c.text3.red(), c.groove.red()), part(c.text3.green(), c.groove.green()),
            part(c.text3.blue(), c.groove.blue())};
}

double BarWaveform::elapsed() const
{
    return std::chrono::duration<double>(m_context.clock.now() - m_since).count();
}

bool BarWaveform::isAnimating() const
{
    return m_frames.isActive() && (m_source.state() == BarEnvelope::State::Loading || elapsed() < kFadeSeconds);
}

void BarWaveform::sourceChanged()
{
    const BarEnvelope::State state = m_source.state();
    m_frames.stop();
    m_since = m_context.clock.now();
    const bool moves = m_area.isVisible() && !Motion::isReduced();
    if (moves && state == BarEnvelope::State::Loading)
        m_frames.start(kBreathFrameMilliseconds, this);
    if (moves && state == BarEnvelope::State::Ready)
        m_frames.start(kFrameMilliseconds, this);
    m_area.update();
}

void BarWaveform::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_frames.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    const bool isLoading = m_source.state() == BarEnvelope::State::Loading;
    if (!m_area.isVisible() || (!isLoading && elapsed() >= kFadeSeconds))
        m_frames.stop();
    if (isLoading)
        m_area.update(0, m_area.height() / 2 - Metrics::kKnob / 2, m_area.width(), Metrics::kKnob);
    else
        m_area.update();
}
