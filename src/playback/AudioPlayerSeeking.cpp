#include "playback/AudioPlayer.h"

#include "async/MainQueue.h"
#include "platform/audio/AudioFilePlayer.h"

#include <cmath>

// Seeks and scrubbing. What sounds fades out, jumps 14 ms after the last request, and fades in again (SeekFade); what
// stands still jumps at once.

namespace {

/// A relative seek that ends this close to the end ends the track. Seconds.
constexpr double kCompletionMargin = 0.01;

} // namespace

void AudioPlayer::seek(double by)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_openingTrack) {
        m_deferred.emplace_back([this, by] { seek(by); });
        return;
    }
    if (!m_audio || std::isnan(by))
        return;
    const double duration = m_audio->duration();
    const double target = PlaybackClock::within(m_seek.target().value_or(m_audio->currentTime()) + by, duration);
    scheduleSeek(target, by > 0 && m_audio->isPlaying() && target >= duration - kCompletionMargin);
}

void AudioPlayer::scheduleSeek(double to, bool reportCompletionAtEnd)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_openingTrack) {
        m_deferred.emplace_back([this, to, reportCompletionAtEnd] { scheduleSeek(to, reportCompletionAtEnd); });
        return;
    }
    if (!m_audio || std::isnan(to))
        return;
    const double target = PlaybackClock::within(to, m_audio->duration());
    m_didReportCompletion = false;
    // While a seek is pending, or the end has come and was not told yet, the sound goes on from the new place.
    const bool goesOn = m_audio->isPlaying() || m_seek.target() || m_isPlaying;
    if (!goesOn) {
        m_audio->setCurrentTime(target);
        m_anchor.reset();
        m_progress.setCurrentTime(target);
        return;
    }
    // The slot in m_seek ends with this object, and whatever replaces the file cancels the seek.
    m_seek.begin(*m_audio, target,
                 [this, reportCompletionAtEnd](double reached) { finishSeek(reached, reportCompletionAtEnd); });
    m_progress.setCurrentTime(target);
}

void AudioPlayer::finishSeek(double target, bool reportCompletionAtEnd)
{
    m_audio->setCurrentTime(target);
    const bool hasEnded = !m_audio->isPlaying();
    if (reportCompletionAtEnd || (hasEnded && target >= m_audio->duration() - kEndMargin)) {
        if (reportCompletionAtEnd)
            m_audio->stop();
        m_audio->setVolume(m_volumeState.value());
        reportCompletion();
        return;
    }
    if (hasEnded) {
        m_audio->play();
        setIsPlaying(m_audio->isPlaying()); // a tick may have seen the end
    }
    m_audio->setVolume(m_volumeState.value(), SeekFade::kFadeIn);
    setAnchor(target);
    m_progress.setCurrentTime(target);
}

void AudioPlayer::cancelPendingSeek(bool restoreVolume)
{
    if (m_seek.cancel() && restoreVolume && m_audio)
        m_audio->setVolume(m_volumeState.value());
}

void AudioPlayer::setScrubbing(bool scrubbing)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_isScrubbing == scrubbing)
        return;
    m_isScrubbing = scrubbing;
    if (scrubbing || m_seek.target() || !m_audio)
        return;
    setAnchor(m_progress.currentTime());
    refreshPlaybackPosition();
}
