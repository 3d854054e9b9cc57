#include "playback/AudioPlaybackProgress.h"

void AudioPlaybackProgress::setCurrentTime(double seconds)
{
    if (m_currentTime == seconds)
        return;
    m_currentTime = seconds;
    emit currentTimeChanged();
}

void AudioPlaybackProgress::setDuration(double seconds)
{
    if (m_duration == seconds)
        return;
    m_duration = seconds;
    emit durationChanged();
}
