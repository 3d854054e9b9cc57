#include "platform/audio/output/EngineFilePlayer.h"

#include "platform/audio/output/AudioEngine.h"
#include "platform/audio/output/FileSound.h"

#include <algorithm>

namespace {
constexpr double kAtEndSeconds = 0.005; // less than any sound
}

EngineFilePlayer::EngineFilePlayer(AudioEngine& engine, std::shared_ptr<FileSound> sound)
    : m_engine(engine)
    , m_sound(std::move(sound))
{
}

EngineFilePlayer::~EngineFilePlayer()
{
    m_sound->setFinishHandler({});
    m_sound->voice.pause();
    m_engine.release(std::move(m_sound));
}

bool EngineFilePlayer::hasFinished() const
{
    return m_sound->finishedJump.load(std::memory_order_acquire) == m_sound->voice.lastJump();
}

bool EngineFilePlayer::isPlaying() const
{
    return m_sound->voice.wantsPlaying() && !m_sound->isLost && !hasFinished();
}

void EngineFilePlayer::play()
{
    if (hasFinished() || currentTime() >= duration() - kAtEndSeconds)
        setCurrentTime(0);
    m_sound->isLost = false;
    m_sound->voice.play();
    m_engine.start(m_sound);
}

void EngineFilePlayer::pause()
{
    m_sound->voice.pause();
}

double EngineFilePlayer::currentTime() const
{
    return std::clamp(m_sound->voice.position(), 0.0, duration());
}

void EngineFilePlayer::setCurrentTime(double seconds)
{
    const double target = std::clamp(seconds, 0.0, duration());
    const uint32_t jump = m_sound->voice.jumpTo(target, isPlaying());
    m_engine.jump(m_sound, target, jump);
}

double EngineFilePlayer::duration() const
{
    return m_sound->duration.load(std::memory_order_relaxed);
}

double EngineFilePlayer::deviceCurrentTime() const
{
    return m_sound->voice.deviceTime();
}

double EngineFilePlayer::outputLatency() const
{
    return m_engine.latency();
}

void EngineFilePlayer::setVolume(float gain, double fadeDuration)
{
    m_sound->voice.setGain(std::clamp(gain, 0.0F, 1.0F), fadeDuration);
}

void EngineFilePlayer::setFinishHandler(std::function<void(bool successfully)> handler)
{
    m_sound->setFinishHandler(std::move(handler));
}
