#pragma once

#include <QObject>

/// Where the current track stands, apart from the player so that ticks redraw only those who watch them. Seconds.
class AudioPlaybackProgress : public QObject {
    Q_OBJECT

public:
    double currentTime() const { return m_currentTime; }
    double duration() const { return m_duration; }

Q_SIGNALS:
    void currentTimeChanged();
    void durationChanged();

private:
    friend class AudioPlayer;
    void setCurrentTime(double seconds);
    void setDuration(double seconds);

    double m_currentTime = 0;
    double m_duration = 0;
};
