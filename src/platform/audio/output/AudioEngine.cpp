#include "platform/audio/output/AudioEngine.h"

#include "platform/audio/AudioFileReader.h"
#include "platform/audio/FileImage.h"
#include "platform/audio/output/EngineFilePlayer.h"
#include "platform/audio/output/FileSound.h"
#include "platform/audio/output/PortAudioBackend.h"

#include <algorithm>
#include <future>

namespace {
constexpr double kTurnSeconds = 0.1; // chosen: a twentieth of what is decoded ahead
constexpr double kRestSeconds = 1.0; // while the output is open but nothing is heard
constexpr double kLongRestSeconds = 3600;
constexpr double kEndTolerance = 0.002;
constexpr double kFadeLimitSeconds = 0.05; // more than a turn of any device
} // namespace

AudioEngine::AudioEngine(MakeBackend makeBackend)
    : m_makeBackend(std::move(makeBackend))
{
    m_thread.start([this] { return turn(); });
    m_disposal.start([] { return EngineThread::Seconds(kLongRestSeconds); });
    m_thread.post([this] { build(); });
}

AudioEngine::~AudioEngine()
{
    m_thread.post([this] {
        setSounding({});
        m_sounds.clear();
        m_readablePort = nullptr;
        m_port.reset();
    });
    m_thread.finish();
    m_disposal.finish();
}

void AudioEngine::build()
{
    SoundSource& source = *this;
    m_port = std::make_unique<OutputPort>(m_makeBackend(), source, [this](AudioOutputEvent event) { tell(event); });
    m_readablePort = m_port.get();
    tell(AudioOutputEvent::DevicesChanged);
}

// --- any thread

std::unique_ptr<AudioFilePlayer> AudioEngine::open(const QString& path, std::stop_token stop)
{
    auto image = FileImage::open(path);
    auto reader = AudioFileReader::open(image, {0, SampleRing::kChannels});
    auto sound = std::make_shared<FileSound>(std::move(image), std::move(reader));
    if (stop.stop_requested())
        throw AudioFileError(AudioFileError::Case::CannotOpen);
    auto primed = std::make_shared<std::promise<void>>();
    const std::future<void> isPrimed = primed->get_future();
    m_thread.post([this, sound, primed = std::move(primed)] {
        prepare(sound);
        primed->set_value();
    });
    isPrimed.wait();
    return std::make_unique<EngineFilePlayer>(*this, std::move(sound));
}

QList<AudioDevice> AudioEngine::devices() const
{
    const OutputPort* const port = m_readablePort;
    return port ? port->devices() : QList<AudioDevice>();
}

double AudioEngine::latency() const
{
    const OutputPort* const port = m_readablePort;
    return port ? port->latency() : 0;
}

void AudioEngine::refreshDevices()
{
    m_thread.post([this] { m_port->refreshDevices(isSounding()); });
}

void AudioEngine::setDevice(const QString& id)
{
    m_device = id;
    m_thread.post([this, id] {
        const bool wasRunning = m_port->isRunning();
        m_port->setDevice(id);
        if (wasRunning && m_sounding && !m_port->isRunning())
            startNow(Sound(m_sounding));
    });
}

void AudioEngine::setEventHandler(std::function<void(AudioOutputEvent)> handler)
{
    const std::lock_guard lock(m_handlerMutex);
    m_handler = std::move(handler);
}

void AudioEngine::tell(AudioOutputEvent event)
{
    const std::lock_guard lock(m_handlerMutex);
    if (m_handler)
        m_handler(event);
}

void AudioEngine::start(Sound sound)
{
    m_thread.post([this, sound = std::move(sound)] { startNow(sound); });
}

void AudioEngine::jump(Sound sound, double seconds, uint32_t jump)
{
    m_thread.post([sound = std::move(sound), seconds, jump] { sound->filler.jump(seconds, jump); });
}

void AudioEngine::release(Sound sound)
{
    m_thread.post([this, sound = std::move(sound)] { releaseNow(sound); });
}

// --- the device's callback

void AudioEngine::render(std::span<float> out, int sampleRate) noexcept
{
    m_isRendering.store(true);
    if (PlaybackVoice* const voice = m_rendered.load())
        voice->render(out, sampleRate);
    else
        std::ranges::fill(out, 0.0F);
    m_isRendering.store(false);
}

// --- the engine's thread

void AudioEngine::setSounding(const Sound& sound)
{
    m_rendered.store(sound ? &sound->voice : nullptr);
    // The callback looks for the voice after it has said that it renders: once it does not, it has left the old one.
    while (m_isRendering.load())
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    m_sounding = sound;
    m_endHeardAt = 0;
}

void AudioEngine::prepare(const Sound& sound)
{
    m_sounds.push_back(sound);
    sound->filler.jump(0, 0);
    if (isSounding())
        return;
    // The device already runs, in silence, when the first sample comes: many swallow what they start with.
    m_port->open(sound->filler.fileSampleRate());
    m_port->start();
}

/// Lets the file be decoded at the output's rate, which is the file's own wherever the device can do it.
/// \return whether it can be heard.
bool AudioEngine::tune(FileSound& sound)
{
    const int rate = m_port->open(sound.filler.fileSampleRate());
    if (rate == sound.filler.sampleRate())
        return true;
    setSounding({});
    try {
        sound.filler.retune(rate);
        return true;
    } catch (const AudioFileError&) {
        sound.isLost = true;
        sound.finish(false);
        return false;
    }
}

void AudioEngine::startNow(const Sound& sound)
{
    if (m_sounding != sound)
        setSounding({});
    sound->isLost = false;
    if (!tune(*sound))
        return;
    if (m_sounding != sound)
        setSounding(sound);
    m_port->start();
}

void AudioEngine::releaseNow(const Sound& sound)
{
    if (m_sounding == sound) {
        awaitFade(*sound);
        setSounding({});
    }
    std::erase(m_sounds, sound);
    // Its end waits for a read that is under way, which on a network may take its time.
    sound->stopReading();
    m_disposal.post([sound] {});
}

/// Lets the callback fade out what it was rendering, so that it does not end with a click.
void AudioEngine::awaitFade(const FileSound& sound) const
{
    const double limit = DeviceClock::systemSeconds() + kFadeLimitSeconds;
    while (sound.voice.isSounding() && m_port->isRunning() && DeviceClock::systemSeconds() < limit)
        std::this_thread::sleep_for(std::chrono::microseconds(500));
}

bool AudioEngine::isSounding() const
{
    return m_sounding && m_sounding->voice.isPlayingWanted() && !m_sounding->isLost &&
           m_sounding->finishedJump != m_sounding->filler.lastJump() && m_port->isRunning();
}

void AudioEngine::watchDevice()
{
    const bool wasSounding = isSounding();
    if (!m_port->closeIfLost() || !wasSounding)
        return;
    m_sounding->isLost = true;
    tell(AudioOutputEvent::Lost);
}

double AudioEngine::watchEnd()
{
    if (!m_sounding)
        return kLongRestSeconds;
    FileSound& sound = *m_sounding;
    const uint32_t jump = sound.filler.lastJump();
    // No listener waits for the end of what was paused in front of it, or within its last moments.
    if (sound.voice.endedJump() != jump || sound.finishedJump == jump || !sound.voice.isPlayingWanted()) {
        m_endHeardAt = 0;
        const std::optional<double> left = sound.filler.secondsToEnd();
        return left ? *left + kEndTolerance : kLongRestSeconds;
    }
    const double now = DeviceClock::systemSeconds();
    if (m_endHeardAt == 0)
        m_endHeardAt = now + m_port->latency();
    if (now < m_endHeardAt)
        return m_endHeardAt - now;
    m_endHeardAt = 0;
    sound.finishedJump.store(jump, std::memory_order_release);
    sound.finish(true);
    return kLongRestSeconds;
}

EngineThread::Seconds AudioEngine::turn()
{
    if (!m_port)
        return EngineThread::Seconds(kLongRestSeconds);
    bool hasMore = false;
    for (const Sound& sound : m_sounds) {
        hasMore = sound->filler.fill() || hasMore;
        sound->updateDuration();
    }
    watchDevice();
    const double toEnd = watchEnd();
    const bool sounds = isSounding();
    m_port->closeIfIdle(sounds);
    if (hasMore)
        return EngineThread::Seconds(0);
    if (sounds || m_endHeardAt > 0)
        return EngineThread::Seconds(std::clamp(toEnd, 0.001, kTurnSeconds));
    return EngineThread::Seconds(m_port->isRunning() ? kRestSeconds : kLongRestSeconds);
}

std::unique_ptr<AudioSystem> makeAudioSystem(const QString& device)
{
    auto engine = std::make_unique<AudioEngine>([] { return std::make_unique<PortAudioBackend>(); });
    engine->setDevice(device);
    return engine;
}
