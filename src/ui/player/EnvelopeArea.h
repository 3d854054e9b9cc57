#pragma once

#include "WaveformScrubber/WaveformScrollSeekStepper.h"
#include "ui/player/BarWaveform.h"
#include "ui/player/ThemeSlider.h"
#include "ui/player/WheelSteps.h"

#include <QBasicTimer>

#include <optional>

/// The waveform of the current track, or a thin line as long as there is none, to look at and to seek in: a click or
/// drag moves the position, the wheel does what the preference says, the pointer shows the time it stands on. The
/// cursor follows what is heard at the screen's rate while something plays and the area is seen; each step repaints
/// only the strip that it crossed. The slider's value is the position in whole seconds.
class EnvelopeArea : public ThemeSlider {
    Q_OBJECT

public:
    explicit EnvelopeArea(const WindowContext& context, QWidget* parent = nullptr);
    ~EnvelopeArea() override;

    /// Where the cursor stands, 0 to 1: under the hand while it is held, else where the sound is.
    double shownFraction() const { return m_fraction; }
    /// Seconds of shownFraction().
    double shownTime() const;
    /// Whether the mouse holds the position.
    bool isHeld() const { return m_isHeld; }
    /// Whether the cursor is moved at the screen's rate at the moment.
    bool isAnimating() const { return m_frames.isActive(); }
    /// What is drawn below the cursor.
    BarWaveform& waveform() const { return *m_waveform; }
    QString spokenValue() const override;
    QSize sizeHint() const override;

Q_SIGNALS:
    /// The position under the hand changed, or the hand let go.
    void heldChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void sliderChange(SliderChange change) override;

private:
    double duration() const;
    void follow();
    void animate();
    void moveCursor(double fraction);
    void hold(double fraction);
    void letGo();
    void hover(std::optional<double> fraction);
    double soughtBy(const QWheelEvent& event);
    void paintPosition(QPainter& painter) const;
    QRect cursorStrip(double fraction) const;
    QRect bubbleRect(double fraction) const;
    void paintBubble(QPainter& painter) const;

    WindowContext m_context;
    BarWaveform* m_waveform;
    WheelSteps m_wheel;
    WaveformScrollSeekStepper m_seekStepper;
    QBasicTimer m_frames;
    double m_fraction = 0;
    std::optional<double> m_hovered; ///< fraction under the pointer
    bool m_isHeld = false;
    bool m_isFollowing = false; ///< the value changes because the player's position did
};
