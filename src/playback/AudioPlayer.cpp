#include "playback/AudioPlayer.h"

#include "async/MainQueue.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/audio/AudioFilePlayer.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// A track that stands this close to its end has been played; playing it again starts it over. Seconds.
constexpr double kPlayedMargin = 0.05;
/// Changes of the volume up to this are none.
constexpr double kVolumeStep = 0.0001;
constexpr double kTickInterval = 0.1; // seconds
/// The window redraws for a change of the position beyond this only. Seconds.
constexpr double kPositionStep = 0.001;

} // namespace

AudioPlayer::AudioPlayer(const Services& services)
    : m_services(services)
    , m_volumeStore(services.preferences, services.clock)
    , m_seek(services.clock)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_volumeState.setValue(static_cast<float>(m_volumeStore.stored()));
    m_services.audio.setEventHandler([self = QPointer<AudioPlayer>(this)](AudioOutputEvent event) {
        async::MainQueue::post([self, event] {
            if (self)
                self->outputChanged(event);
        });
    });
}

AudioPlayer::~AudioPlayer()
{
    m_services.audio.setEventHandler({});
    dropAudio();
}

void AudioPlayer::setListeners(Listeners listeners)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_listeners = std::move(listeners);
}

void AudioPlayer::play(const Track& track)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_openingTrack && m_openingTrack->id() == track.id()) {
        toggle();
        return;
    }
    cancelPendingSeek(true);
    if (m_openingTrack || !m_audio || m_currentID != track.id()) {
        startOpening(track);
        return;
    }
    const bool isPlayed =
        m_progress.duration() > 0 && m_progress.currentTime() >= m_progress.duration() - kPlayedMargin;
    if (!m_audio->isPlaying() && isPlayed)
        restart();
    else
        toggle();
}

void AudioPlayer::restart()
{
    m_audio->setCurrentTime(0);
    m_progress.setCurrentTime(0);
    startAudio();
    setIsPlaying(m_audio->isPlaying());
    setAnchor(m_audio->currentTime());
    tick();
    publishPlaybackState();
}

/// Every start of the sound: what follows may be completed again.
void AudioPlayer::startAudio()
{
    m_didReportCompletion = false;
    m_outputLatency = PlaybackClock::usableLatency(m_audio->outputLatency());
    // The player object would start over by itself a little later; the anchor needs the position now.
    if (m_audio->duration() > 0 && m_audio->currentTime() >= m_audio->duration())
        m_audio->setCurrentTime(0);
    m_audio->play();
}

void AudioPlayer::toggle()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_openingTrack) {
        m_deferred.emplace_back([this] { toggle(); });
        return;
    }
    if (!m_audio)
        return;
    cancelPendingSeek(true);
    if (m_audio->isPlaying()) {
        m_audio->pause();
        publishPosition();
        m_anchor.reset();
    } else {
        startAudio();
        setAnchor(m_audio->currentTime());
    }
    setIsPlaying(m_audio->isPlaying());
    tick();
    publishPlaybackState();
}

void AudioPlayer::stopAndClear()
{
    VELMORA_ASSERT_MAIN_THREAD();
    cancelPendingSeek(false);
    m_openTask.cancel();
    endOpening();
    m_deferred.clear();
    dropAudio();
    clearPublished();
    publishPlaybackState();
}

void AudioPlayer::dropAudio()
{
    m_ticks.cancel();
    m_anchor.reset();
    if (!m_audio)
        return;
    m_audio->stop();
    m_audio->setFinishHandler({});
    m_audio.reset();
}

void AudioPlayer::fileEnded(const std::weak_ptr<AudioFilePlayer>& ended, bool successfully)
{
    if (!successfully || !m_audio || ended.lock() != m_audio || m_audio->isPlaying())
        return;
    // The user asked for another place before the end came: the seek plays on from there.
    if (m_seek.target() && *m_seek.target() < m_audio->duration() - kEndMargin)
        return;
    reportCompletion();
}

void AudioPlayer::reportCompletion()
{
    if (m_didReportCompletion)
        return;
    m_didReportCompletion = true;
    cancelPendingSeek(true);
    m_ticks.cancel();
    m_anchor.reset();
    setIsPlaying(false);
    m_progress.setDuration(std::fmax(m_audio->duration(), 0)); // a damaged file turns out shorter
    publishPosition();
    publishPlaybackState();
    emit m_services.notifications.velmoraPlaybackDidFinish(std::optional<TrackID>(m_currentID));
}

void AudioPlayer::outputChanged(AudioOutputEvent event)
{
    switch (event) {
    case AudioOutputEvent::Lost:
        if (outputLost())
            report(QStringLiteral("Звуковое устройство отключено. Воспроизведение приостановлено."), true);
        return;
    case AudioOutputEvent::Silent:
        report(QStringLiteral("Звуковое устройство не найдено: звук не слышен."), true);
        return;
    case AudioOutputEvent::Sounding:
        report(QStringLiteral("Звук снова слышен."), false);
        return;
    case AudioOutputEvent::DevicesChanged:
        return;
    }
}

/// \return whether something was paused by it.
bool AudioPlayer::outputLost()
{
    if (!m_audio || m_audio->isPlaying() || m_didReportCompletion)
        return false;
    m_audio->pause(); // what was lost must not sound by itself when an output is there again
    // A seek on its way must not start the sound again on whatever device is there now.
    if (const std::optional<double> target = m_seek.target()) {
        m_audio->setCurrentTime(*target);
        cancelPendingSeek(true);
    }
    m_anchor.reset();
    publishPosition();
    setIsPlaying(false);
    tick();
    publishPlaybackState();
    return true;
}

void AudioPlayer::setVolume(double volume)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (std::isnan(volume))
        return;
    const double value = std::clamp(volume, 0.0, 1.0);
    if (std::abs(value - double(m_volumeState.value())) <= kVolumeStep)
        return;
    m_volumeState.setValue(static_cast<float>(value));
    // During a seek the sound is faded out, and comes back at this volume.
    if (m_audio && !m_seek.target())
        m_audio->setVolume(m_volumeState.value());
    m_volumeStore.storeLater(value);
}

bool AudioPlayer::matchesCurrentTrack(const Track& track) const
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (track.id() == m_currentID)
        return true;
    const QUrl current = m_currentTrack ? m_currentTrack->url() : QUrl();
    if (track.url().isEmpty() || current.isEmpty())
        return track.url().isEmpty() && current.isEmpty();
    return FileURL::standardized(track.url()) == FileURL::standardized(current);
}

void AudioPlayer::setAnchor(double trackTime)
{
    m_anchor.reset();
    if (m_audio->isPlaying())
        m_anchor = PlaybackClock::Anchor{m_audio->deviceCurrentTime(), trackTime};
}

/// Starts the ticks afresh, or ends them when nothing plays.
void AudioPlayer::tick()
{
    m_ticks.cancel();
    refreshPlaybackPosition();
    if (m_audio && m_audio->isPlaying())
        m_ticks.start([this](std::stop_token stop) { return refreshRegularly(stop); });
}

async::Task<> AudioPlayer::refreshRegularly(std::stop_token stop)
{
    while (true) {
        co_await m_services.clock.sleep(async::seconds(kTickInterval), stop);
        refreshPlaybackPosition();
    }
}

void AudioPlayer::refreshPlaybackPosition()
{
    if (!m_audio || m_isScrubbing)
        return;
    m_progress.setDuration(std::fmax(m_audio->duration(), 0)); // decoding may have found another than the file told
    const double time = resolvedPlaybackTime();
    if (std::abs(time - m_progress.currentTime()) > kPositionStep)
        m_progress.setCurrentTime(time);
    setIsPlaying(m_audio->isPlaying());
}

double AudioPlayer::resolvedPlaybackTime() const
{
    if (m_seek.target())
        return *m_seek.target();
    const double duration = m_audio->duration();
    if (m_anchor && m_audio->isPlaying())
        return PlaybackClock::trackTime(*m_anchor, m_audio->deviceCurrentTime(), duration);
    return PlaybackClock::within(m_audio->currentTime(), duration);
}

double AudioPlayer::synchronizedWaveformProgress() const
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_audio)
        return 0;
    const double duration = m_audio->duration();
    if (m_seek.target())
        return PlaybackClock::fraction(*m_seek.target(), duration);
    double time = m_progress.currentTime();
    if (m_isPlaying && m_anchor)
        time = PlaybackClock::trackTime(*m_anchor, m_audio->deviceCurrentTime(), duration);
    // What is heard now left the decoder earlier.
    return PlaybackClock::fraction(m_isPlaying ? time - m_outputLatency : time, duration);
}

void AudioPlayer::publishPosition()
{
    m_progress.setCurrentTime(PlaybackClock::within(m_audio->currentTime(), m_audio->duration()));
}

void AudioPlayer::setCurrentTrack(const std::optional<Track>& track)
{
    m_currentTrack = track;
    m_currentID = track ? std::optional(track->id()) : std::nullopt;
    emit currentTrackChanged();
}

void AudioPlayer::setIsPlaying(bool isPlaying)
{
    if (m_isPlaying == isPlaying)
        return;
    m_isPlaying = isPlaying;
    emit isPlayingChanged();
}

void AudioPlayer::clearPublished()
{
    if (m_currentID)
        setCurrentTrack(std::nullopt);
    setIsPlaying(false);
    m_progress.setCurrentTime(0);
    m_progress.setDuration(0);
}

void AudioPlayer::publishPlaybackState()
{
    if (m_listeners.playbackStateDidChange)
        m_listeners.playbackStateDidChange(m_isPlaying, m_currentID);
    const QUrl url = m_currentTrack ? m_currentTrack->url() : QUrl();
    async::MainQueue::post([self = QPointer<AudioPlayer>(this), isPlaying = m_isPlaying, url] {
        if (self && self->m_listeners.waveformPlaybackDidChange)
            self->m_listeners.waveformPlaybackDidChange(isPlaying, url);
    });
    emit m_services.notifications.velmoraPlaybackDidChange();
}

void AudioPlayer::report(const QString& message, bool isWarning) const
{
    if (m_listeners.report)
        m_listeners.report(VelmoraLocalization::string(message), isWarning);
}
