#pragma once

#include <QObject>

/// Where the current track stands, apart from the player so that ticks redraw only those who watch them. Seconds.
class AudioPlaybackProgress : public QObject {
    Q_OBJECT

public:
    /// From 0 to duration(); ten times a second while playing, at once after a seek.
    double currentTime() const { return m_currentTime; }
    /// 0 without a track; decoding may correct what the file told.
    double duration() const { return m_duration; }

Q_SIGNALS:
    /// currentTime() differs from what was told last.
    void currentTimeChanged();
    /// duration() differs: another track, or decoding found another length.
    void durationChanged();

private:
    friend class AudioPlayer;
    void setCurrentTime(double seconds);
    void setDuration(double seconds);

    double m_currentTime = 0;
    double m_duration = 0;
};
