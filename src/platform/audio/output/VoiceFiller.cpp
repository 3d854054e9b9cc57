#include "platform/audio/output/VoiceFiller.h"

#include "platform/audio/AudioFileReader.h"

#include <algorithm>
#include <cmath>

namespace {
// A step short enough that a seek never waits long for it.
constexpr int64_t kStepFrames = 4096;
// Enough for the first turns of a device; the rest comes while they are heard.
constexpr double kFirstSeconds = 0.06;
} // namespace

VoiceFiller::VoiceFiller(std::shared_ptr<FileImage> image, std::unique_ptr<AudioFileReader> reader,
                         PlaybackVoice& voice)
    : m_image(std::move(image))
    , m_reader(std::move(reader))
    , m_voice(voice)
{
}

VoiceFiller::~VoiceFiller() = default;

int VoiceFiller::sampleRate() const
{
    return m_reader->sampleRate();
}

int VoiceFiller::fileSampleRate() const
{
    return m_reader->fileSampleRate();
}

double VoiceFiller::duration() const
{
    return static_cast<double>(m_reader->frameCount()) / m_reader->sampleRate();
}

void VoiceFiller::jump(double seconds, uint32_t jump)
{
    m_jump = jump;
    m_target = seconds;
    const int rate = m_reader->sampleRate();
    const auto frame = std::clamp<int64_t>(std::llround(seconds * rate), 0, m_reader->frameCount());
    m_reader->seek(frame);
    m_segment = &m_voice.beginSegment(static_cast<double>(frame) / rate, jump, rate,
                                      std::max(static_cast<int64_t>(kAheadSeconds * rate), 4 * kStepFrames));
    m_framesIn = 0;
    m_isAtEnd = false;
    fillUpTo(static_cast<int64_t>(kFirstSeconds * rate));
    m_voice.publishSegment();
}

void VoiceFiller::retune(int sampleRate)
{
    const double place = m_voice.positionAfter(m_jump).value_or(m_target);
    m_reader = AudioFileReader::open(m_image, {sampleRate, SampleRing::kChannels});
    jump(place, m_jump);
    m_voice.adoptWithoutCallback();
}

void VoiceFiller::fillUpTo(int64_t frames)
{
    while (!m_isAtEnd && m_framesIn < frames)
        decode(frames - m_framesIn);
}

void VoiceFiller::decode(int64_t frames)
{
    const std::span<float> room = m_segment->ring.writeSpan(frames);
    const int64_t decoded = m_reader->read(room);
    m_segment->ring.commit(decoded);
    m_framesIn += decoded;
    if (decoded * SampleRing::kChannels < static_cast<int64_t>(room.size())) {
        m_isAtEnd = true;
        m_segment->endFrame.store(m_framesIn, std::memory_order_release);
    }
}

bool VoiceFiller::fill()
{
    if (!m_segment || m_isAtEnd)
        return false;
    // Not for every few frames that went out: decoders work best in larger pieces.
    if (m_segment->ring.writable() < kStepFrames)
        return false;
    decode(kStepFrames);
    return !m_isAtEnd && m_segment->ring.writable() >= kStepFrames;
}

std::optional<double> VoiceFiller::secondsToEnd() const
{
    if (!m_segment || !m_isAtEnd)
        return std::nullopt;
    return static_cast<double>(m_segment->ring.readable()) / m_segment->sampleRate;
}
