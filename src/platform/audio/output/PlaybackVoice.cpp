#include "platform/audio/output/PlaybackVoice.h"

#include <algorithm>

namespace {
// Chosen: short enough to be felt as at once, long enough not to click.
constexpr double kPauseFadeSeconds = 0.005;
constexpr double kVolumeStepSeconds = 0.003;

int64_t framesOf(double seconds, int sampleRate)
{
    return static_cast<int64_t>(seconds * sampleRate + 0.5);
}
} // namespace

// --- main thread

void PlaybackVoice::play()
{
    m_controls.isPlaying = true;
    publishControls();
}

void PlaybackVoice::publishControls()
{
    m_isPlayingWanted.store(m_controls.isPlaying, std::memory_order_release);
    m_toCallback.write(m_controls);
}

void PlaybackVoice::pause()
{
    m_controls.isPlaying = false;
    publishControls();
}

uint32_t PlaybackVoice::jumpTo(double seconds, bool staysPlaying)
{
    m_controls.isPlaying = m_controls.isPlaying && staysPlaying;
    // The newest wish stands for all before it: if the callback has not come since an earlier jump, that one is
    // skipped.
    m_controls.beforeJump = lastGain();
    m_controls.afterJump = {};
    ++m_controls.jump;
    m_jumpTarget = seconds;
    publishControls();
    return m_controls.jump;
}

const PlaybackVoice::GainWish& PlaybackVoice::lastGain() const
{
    return m_controls.afterJump.serial != 0 ? m_controls.afterJump : m_controls.beforeJump;
}

void PlaybackVoice::setGain(float gain, double fadeSeconds)
{
    // Which of the two it is does not matter once the jump was made: the callback takes each wish by its serial.
    m_controls.afterJump = {++m_gainSerial, gain, fadeSeconds};
    publishControls();
}

double PlaybackVoice::position() const
{
    if (m_doneJump.load(std::memory_order_acquire) != m_controls.jump)
        return m_jumpTarget;
    return m_position.load(std::memory_order_acquire);
}

// --- engine's thread

VoiceSegment& PlaybackVoice::beginSegment(double start, uint32_t jump, int sampleRate, int64_t capacityFrames)
{
    // A segment that the callback has not taken comes back; one that it has taken sets its predecessor free.
    const bool isUnused = !m_isBegunPublished || m_published.exchange(nullptr, std::memory_order_acq_rel);
    if (!isUnused)
        m_begun = m_begun == &m_segments[0] ? &m_segments[1] : &m_segments[0];
    m_isBegunPublished = false;
    m_begun->ring.reset(capacityFrames);
    m_begun->sampleRate = sampleRate;
    m_begun->start = start;
    m_begun->jump = jump;
    m_begun->framesOut = 0;
    m_begun->endFrame.store(VoiceSegment::kEndUnknown, std::memory_order_relaxed);
    return *m_begun;
}

void PlaybackVoice::publishSegment()
{
    m_isBegunPublished = true;
    m_published.store(m_begun, std::memory_order_release);
}

std::optional<double> PlaybackVoice::positionAfter(uint32_t jump) const
{
    if (m_doneJump.load(std::memory_order_acquire) != jump)
        return std::nullopt;
    return m_position.load(std::memory_order_acquire);
}

void PlaybackVoice::adoptWithoutCallback()
{
    adoptPublished();
}

// --- device's callback

bool PlaybackVoice::adoptPublished()
{
    VoiceSegment* const segment = m_published.exchange(nullptr, std::memory_order_acq_rel);
    if (!segment)
        return false;
    m_current = segment;
    m_position.store(segment->start, std::memory_order_relaxed);
    m_doneJump.store(segment->jump, std::memory_order_release);
    return true;
}

bool PlaybackVoice::takeGain(const GainWish& wish, int sampleRate)
{
    if (wish.serial <= m_takenGain)
        return false;
    m_takenGain = wish.serial;
    const double fade = wish.fadeSeconds > 0 ? wish.fadeSeconds : m_isSounding ? kVolumeStepSeconds : 0;
    m_gain.moveTo(wish.gain, framesOf(fade, sampleRate));
    return true;
}

/// Renders what has to be heard before the jump, then makes it. \return false when it has to wait for its segment.
bool PlaybackVoice::prepareJump(const Controls& controls, std::span<float>& out, int sampleRate)
{
    takeGain(controls.beforeJump, sampleRate);
    if (controls.isPlaying && m_isSounding && m_gain.isMoving()) {
        const auto fade = static_cast<size_t>(m_gain.framesLeft()) * SampleRing::kChannels;
        std::span<float> part = out.first(std::min(fade, out.size()));
        const std::span<float> rest = renderSound(part);
        out = out.subspan(part.size() - rest.size());
        if (rest.empty() && (out.empty() || m_gain.isMoving()))
            return true;
    }
    while (!m_current || m_current->jump != controls.jump) {
        if (!adoptPublished())
            return false;
    }
    m_isSounding = false;
    m_pauseGain.set(1.0F);
    takeGain(controls.afterJump, sampleRate);
    return true;
}

/// \return the part that nothing could be rendered into.
std::span<float> PlaybackVoice::renderSound(std::span<float> out)
{
    while (!out.empty() && m_current) {
        const std::span<const float> sound =
            m_current->ring.readSpan(static_cast<int64_t>(out.size()) / SampleRing::kChannels);
        if (sound.empty())
            break;
        const std::span<float> part = out.first(sound.size());
        std::ranges::copy(sound, part.begin());
        const auto frames = static_cast<int64_t>(sound.size()) / SampleRing::kChannels;
        m_current->ring.consume(frames);
        m_current->framesOut += frames;
        m_gain.apply(part);
        if (m_pauseGain.isMoving())
            m_pauseGain.apply(part);
        out = out.subspan(sound.size());
        m_isSounding = true;
    }
    return out;
}

/// The first moments of a pause: what would have come, fading, without being used up.
void PlaybackVoice::renderPause(std::span<float> out, int sampleRate)
{
    const std::span<const float> sound = m_current->ring.readSpan(
        std::min(framesOf(kPauseFadeSeconds, sampleRate), static_cast<int64_t>(out.size()) / SampleRing::kChannels));
    const std::span<float> part = out.first(sound.size());
    std::ranges::copy(sound, part.begin());
    GainRamp volume = m_gain;
    volume.apply(part);
    GainRamp fade;
    fade.moveTo(0, static_cast<int64_t>(sound.size()) / SampleRing::kChannels);
    fade.apply(part);
    std::ranges::fill(out.subspan(part.size()), 0.0F);
    m_pauseGain.set(0);
    m_pauseGain.moveTo(1.0F, framesOf(kPauseFadeSeconds, sampleRate));
}

void PlaybackVoice::render(std::span<float> out, int sampleRate)
{
    renderTurn(out, sampleRate);
    m_wasSounding.store(m_isSounding, std::memory_order_release);
}

void PlaybackVoice::renderTurn(std::span<float> out, int sampleRate)
{
    DeviceTurn turn{m_soundOut, m_soundOut, DeviceClock::systemSeconds()};
    const Controls& controls = m_toCallback.read();
    const bool isAtPlace = m_current && m_current->jump == controls.jump;
    if (!isAtPlace && !prepareJump(controls, out, sampleRate)) {
        std::ranges::fill(out, 0.0F);
        m_isSounding = false;
        m_clock.tell(turn);
        return;
    }
    if (out.empty() || m_current->jump != controls.jump) { // still fading out in front of the jump
        m_clock.tell(turn);
        return;
    }
    takeGain(controls.beforeJump, sampleRate);
    takeGain(controls.afterJump, sampleRate);
    if (!controls.isPlaying) {
        if (m_isSounding)
            renderPause(out, sampleRate);
        else
            std::ranges::fill(out, 0.0F);
        m_isSounding = false;
        m_clock.tell(turn);
        return;
    }
    const std::span<float> rest = renderSound(out);
    std::ranges::fill(rest, 0.0F);
    turn.soundAfter += static_cast<double>(out.size() - rest.size()) / SampleRing::kChannels / sampleRate;
    tellMain(turn);
    if (rest.empty())
        return;
    m_isSounding = false;
    if (m_current->endFrame.load(std::memory_order_acquire) == m_current->framesOut)
        m_endedJump.store(m_current->jump, std::memory_order_release);
    else
        m_starvedSeconds.store(m_starvedSeconds.load(std::memory_order_relaxed) +
                                   static_cast<double>(rest.size()) / SampleRing::kChannels / sampleRate,
                               std::memory_order_relaxed);
}

void PlaybackVoice::tellMain(const DeviceTurn& turn)
{
    m_soundOut = turn.soundAfter;
    m_clock.tell(turn);
    m_position.store(m_current->start + static_cast<double>(m_current->framesOut) / m_current->sampleRate,
                     std::memory_order_release);
}
