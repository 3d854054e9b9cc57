#include "playback/AudioPlayer.h"

#include "async/Cancelled.h"
#include "async/Clock.h"
#include "async/Executor.h"
#include "async/MainQueue.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/audio/AudioFilePlayer.h"

#include <QPointer>

#include <cmath>
#include <utility>

namespace {
/// Chosen: what answers later than this seems not to have heard. Seconds.
constexpr double kOpeningPatience = 0.2;
} // namespace

// The road of a file: it is opened on a worker, started on the main thread, and then what was asked for meanwhile is
// done in its order.

void AudioPlayer::startOpening(const Track& track)
{
    dropAudio();
    m_deferred.clear();
    m_openingTrack = track;
    m_openTask.start([this, track](std::stop_token stop) { return openFile(track, stop); });
    if (!m_isOpeningSlowly) // a sign that is shown already stays for the next file
        m_slowOpening.start([this](std::stop_token stop) { return tellSlowOpening(stop); });
}

async::Task<> AudioPlayer::openFile(Track track, std::stop_token stop)
{
    const auto job = [&audio = m_services.audio, path = FileURL::standardizedPath(track.url())](
                         std::stop_token jobStop) { return audio.open(path, std::move(jobStop)); };
    std::shared_ptr<AudioFilePlayer> audio;
    try {
        audio = co_await m_services.executor.run(async::Priority::Player, stop, job);
    } catch (const async::Cancelled&) {
        throw;
    } catch (const std::exception&) { // not the file's fault alone: memory may be short
    }
    finishOpening(track, std::move(audio));
}

async::Task<> AudioPlayer::tellSlowOpening(std::stop_token stop)
{
    co_await m_services.clock.sleep(async::seconds(kOpeningPatience), stop);
    setOpeningSlowly(true);
}

void AudioPlayer::setOpeningSlowly(bool isSlow)
{
    if (m_isOpeningSlowly == isSlow)
        return;
    m_isOpeningSlowly = isSlow;
    emit isOpeningSlowlyChanged();
}

void AudioPlayer::endOpening()
{
    m_openingTrack.reset();
    m_slowOpening.cancel();
    setOpeningSlowly(false);
}

void AudioPlayer::finishOpening(const Track& track, std::shared_ptr<AudioFilePlayer> audio)
{
    endOpening();
    const std::vector<Operation> deferred = std::exchange(m_deferred, {});
    if (!audio) {
        openingFailed(track.url());
        return;
    }
    m_audio = std::move(audio);
    watchEnd();
    m_audio->setVolume(m_volumeState.value());
    startAudio();
    setCurrentTrack(track);
    m_progress.setDuration(std::fmax(m_audio->duration(), 0));
    publishPosition();
    setIsPlaying(m_audio->isPlaying());
    setAnchor(m_audio->currentTime());
    tick();
    publishPlaybackState();
    runDeferred(deferred);
}

void AudioPlayer::openingFailed(const QUrl& file)
{
    clearPublished();
    if (m_listeners.fail)
        m_listeners.fail(VelmoraLocalization::string(QStringLiteral("Не удалось открыть аудиофайл.")), file);
    publishPlaybackState();
}

void AudioPlayer::runDeferred(const std::vector<Operation>& operations)
{
    const std::shared_ptr<AudioFilePlayer> opened = m_audio;
    for (const Operation& operation : operations) {
        // What listens may have gone on to another track meanwhile.
        if (m_audio != opened || m_openingTrack)
            return;
        operation();
    }
}

void AudioPlayer::watchEnd()
{
    m_audio->setFinishHandler([self = QPointer<AudioPlayer>(this), ended = std::weak_ptr(m_audio)](bool successfully) {
        async::MainQueue::post([self, ended, successfully] {
            if (self)
                self->fileEnded(ended, successfully);
        });
    });
}
