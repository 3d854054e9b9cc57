#pragma once

#include "async/Clock.h"
#include "ui/context/WindowContext.h"
#include "ui/waveform/BarEnvelope.h"
#include "ui/waveform/WaveformPicture.h"

#include <QBasicTimer>
#include <QObject>

class QWidget;

/// What the player's bar draws of an envelope: the waveform, or a thin line that breathes while the envelope is being
/// made. Follows the preferences and the theme. Thread: main.
class BarWaveform : public QObject {
    Q_OBJECT

public:
    static constexpr double kLeastHeight = 16; ///< device-independent pixels; below, no shape can be seen

    /// \param area what it is drawn on; its owner.
    BarWaveform(const WindowContext& context, QWidget& area);

    /// Where the envelope comes from; it is told the file to be shown.
    BarEnvelope& source() { return m_source; }
    /// Whether there is a waveform to be drawn.
    bool isReady() const { return m_source.state() == BarEnvelope::State::Ready; }
    /// Whether something changes by itself at the moment.
    bool isAnimating() const;
    /// Where the waveform stands in the area. \param margin left and right of it.
    QRect rect(int margin) const;
    /// Paints the waveform. \param played fraction from 0 to 1.
    void paint(QPainter& painter, const QRect& rect, double played);
    /// The colour of the thin line that stands for the waveform meanwhile.
    QColor lineColour() const;
    /// Of the preferences, in the present theme.
    WaveformColours colours() const;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void sourceChanged();
    /// Seconds since the source changed.
    double elapsed() const;

    WindowContext m_context;
    QWidget& m_area;
    WaveformPicture m_picture;
    QBasicTimer m_frames;
    async::Duration m_since{}; ///< in the clock's time, the last change of the source
    BarEnvelope m_source;
};
