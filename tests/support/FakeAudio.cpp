#include "support/FakeAudio.h"

#include <algorithm>

namespace {

constexpr double kUsualDuration = 200;

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

FakeFilePlayer::~FakeFilePlayer()
{
    const std::lock_guard lock(m_system.m_mutex);
    m_system.m_players.removeOne(this);
}

/// Moves on to the present. Only what plays has a past to catch up with.
void FakeFilePlayer::advance() const
{
    if (!m_isPlaying)
        return;
    const async::Duration now = m_system.m_clock.now();
    const double elapsed = std::chrono::duration<double>(now - m_lookedAt).count();
    m_lookedAt = now;
    const double played = std::min(elapsed, std::max(m_duration - m_position, 0.0));
    m_deviceTime += played;
    m_position += played;
    if (m_position < m_duration)
        return;
    m_position = m_duration;
    m_isPlaying = false;
    tellEnd(true);
}

void FakeFilePlayer::tellEnd(bool successfully) const
{
    if (m_finishHandler)
        m_finishHandler(successfully);
}

void FakeFilePlayer::play()
{
    advance();
    note(QStringLiteral("play"));
    if (m_isPlaying)
        return;
    if (m_position >= m_duration)
        m_position = 0;
    m_lookedAt = m_system.m_clock.now();
    m_isPlaying = true;
}

void FakeFilePlayer::halt(const QString& call)
{
    advance();
    note(call);
    m_isPlaying = false;
}

void FakeFilePlayer::setCurrentTime(double seconds)
{
    advance();
    note(QStringLiteral("seek ") + number(seconds));
    m_position = std::clamp(seconds, 0.0, m_duration);
}

double FakeFilePlayer::outputLatency() const
{
    return m_system.latency;
}

void FakeFilePlayer::setVolume(float gain, double fadeDuration)
{
    m_gain = gain;
    const QString call = QStringLiteral("volume ") + number(gain);
    note(fadeDuration > 0 ? call + QStringLiteral(" in ") + number(fadeDuration) : call);
}

void FakeFilePlayer::finish(bool successfully)
{
    advance();
    if (successfully)
        m_position = m_duration;
    m_isPlaying = false;
    tellEnd(successfully);
}

std::unique_ptr<AudioFilePlayer> FakeAudioSystem::open(const QString& path, std::stop_token stop)
{
    const std::lock_guard lock(m_mutex);
    m_openedPaths.append(path);
    if (stop.stop_requested())
        throw AudioFileError(AudioFileError::Case::CannotOpen);
    if (const auto failure = m_failures.constFind(path); failure != m_failures.cend())
        throw AudioFileError(*failure);
    auto player = std::make_unique<FakeFilePlayer>(*this, path, m_durations.value(path, kUsualDuration));
    m_players.append(player.get());
    return player;
}

void FakeAudioSystem::setDuration(const QString& path, double seconds)
{
    const std::lock_guard lock(m_mutex);
    m_durations.insert(path, seconds);
}

void FakeAudioSystem::setFailure(const QString& path, AudioFileError::Case failure)
{
    const std::lock_guard lock(m_mutex);
    m_failures.insert(path, failure);
}

void FakeAudioSystem::tell(AudioOutputEvent event) const
{
    if (m_eventHandler)
        m_eventHandler(event);
}

void FakeAudioSystem::loseDevice()
{
    bool wasPlaying = false;
    const QList<FakeFilePlayer*> players = m_players;
    for (FakeFilePlayer* player : players) {
        wasPlaying |= player->isPlaying();
        player->m_isPlaying = false;
    }
    if (wasPlaying)
        tell(AudioOutputEvent::Lost);
}

FakeFilePlayer* FakeAudioSystem::last() const
{
    const std::lock_guard lock(m_mutex);
    return m_players.isEmpty() ? nullptr : m_players.last();
}

int FakeAudioSystem::openCount() const
{
    const std::lock_guard lock(m_mutex);
    return int(m_players.size());
}

QStringList FakeAudioSystem::openedPaths() const
{
    const std::lock_guard lock(m_mutex);
    return m_openedPaths;
}
