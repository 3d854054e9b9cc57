#pragma once

#include "ui/player/ThemeSlider.h"
#include "ui/player/WheelSteps.h"

class AudioPlayer;

/// The player's volume in per cent, 0 to 100. Follows the player and changes it; the player stores it. Thread: main.
class VolumeSlider : public ThemeSlider {
    Q_OBJECT

public:
    static constexpr int kStep = 5; ///< per cent for a notch of the wheel and for an arrow key

    /// \param player whose volume it shows and sets; outlives it.
    VolumeSlider(const Theme& theme, AudioPlayer& player, Qt::Orientation orientation, QWidget* parent = nullptr);

    QString spokenValue() const override;
    QSize sizeHint() const override;
    /// Louder by so many steps of kStep, softer for a negative number.
    static void change(AudioPlayer& player, int steps);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void follow();

    AudioPlayer& m_player;
    WheelSteps m_wheel;
    bool m_isFollowing = false; ///< the value changes because the player's did
};
