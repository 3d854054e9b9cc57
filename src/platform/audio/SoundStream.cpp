#include "platform/audio/SoundStream.h"

#include "platform/audio/AudioFileError.h"

#include <algorithm>

namespace {

/// Longest gap that is filled with silence; a longer one is a fault of the timestamps. Chosen.
constexpr int kLongestGapSeconds = 10;
/// Packets before the target whose sound depends on those before them: two transforms of any codec known. Chosen with
/// room; in frames.
constexpr qint64 kRunUpFrames = 8192;
constexpr int kMostChannels = 64;
constexpr int kLowestRate = 1000;
constexpr int kHighestRate = 1'536'000;

} // namespace

SoundStream::SoundStream(std::shared_ptr<FileImage> image, int channelCount)
    : m_input(std::move(image))
    , m_decoder(m_input.stream())
{
    const AVFrame* first = m_decoder.next(m_input);
    if (!first || first->ch_layout.nb_channels < 1 || first->ch_layout.nb_channels > kMostChannels ||
        first->sample_rate < kLowestRate || first->sample_rate > kHighestRate)
        throw AudioFileError(AudioFileError::Case::NoAudio);
    m_sampleRate = first->sample_rate;
    m_fileChannelCount = first->ch_layout.nb_channels;
    m_converter.emplace(*first, channelCount);
    m_firstTime = first->pts == AV_NOPTS_VALUE ? 0 : first->pts;
    m_isPlaced = true;
    place(*first);
}

/// The place of a frame by its timestamp, or where the last one ended if it has none.
qint64 SoundStream::frameOf(const AVFrame& frame) const
{
    if (frame.pts == AV_NOPTS_VALUE)
        return m_position + m_silence;
    return av_rescale_q(frame.pts - m_firstTime, m_input.stream().time_base, {1, m_sampleRate}) + m_shift;
}

/// Makes a decoded frame the block to deliver, behind silence where there is a gap.
void SoundStream::place(const AVFrame& frame)
{
    m_delivered = 0;
    m_converter->convert(frame, m_block);
    const qint64 stated = frameOf(frame);
    if (!m_isPlaced) {
        m_position = stated;
        m_isPlaced = true;
        return;
    }
    const qint64 gap = stated - m_position;
    // Less than half a frame is a rounded timestamp, not a missing packet.
    if (std::abs(gap) <= frame.nb_samples / 2)
        return;
    if (gap > 0 && gap <= qint64(kLongestGapSeconds) * m_sampleRate)
        m_silence = gap;
    else
        m_shift -= gap;
}

bool SoundStream::fetch()
{
    for (;;) {
        const AVFrame* frame = m_decoder.next(m_input);
        if (!frame)
            return false;
        place(*frame);
        if (!m_block.empty())
            return true;
    }
}

qint64 SoundStream::take(std::span<float> into)
{
    const auto channels = static_cast<size_t>(channelCount());
    const size_t room = into.size() / channels;
    size_t frames = 0;
    if (m_silence > 0) {
        frames = std::min(room, static_cast<size_t>(m_silence));
        std::fill_n(into.begin(), frames * channels, 0.0F);
        m_silence -= static_cast<qint64>(frames);
    } else {
        frames = std::min(room, (m_block.size() - m_delivered) / channels);
        std::copy_n(m_block.begin() + static_cast<std::ptrdiff_t>(m_delivered), frames * channels, into.begin());
        m_delivered += frames * channels;
    }
    m_position += static_cast<qint64>(frames);
    return static_cast<qint64>(frames);
}

qint64 SoundStream::read(std::span<float> into)
{
    const auto channels = static_cast<size_t>(channelCount());
    qint64 done = 0;
    while (into.size() >= channels) {
        if (m_silence == 0 && m_delivered == m_block.size() && !fetch())
            break;
        const qint64 got = take(into);
        into = into.subspan(static_cast<size_t>(got) * channels);
        done += got;
    }
    return done;
}

void SoundStream::restart()
{
    m_input.rewind();
    // A new decoder instead of a flushed one: some keep a noise generator's state, and the same sound comes every time.
    m_decoder = PacketDecoder(m_input.stream());
    m_block.clear();
    m_delivered = 0;
    m_silence = m_shift = m_position = 0;
    m_isPlaced = true;
}

/// Stands at the first block that could be decoded from that frame on, with its place known. \return false where that
/// is not possible, or nothing comes, or only what lies behind \p frame.
bool SoundStream::goTo(qint64 start, qint64 frame)
{
    if (!m_input.seek(m_firstTime + av_rescale_q(start, {1, m_sampleRate}, m_input.stream().time_base)))
        return false;
    m_decoder.flush();
    m_block.clear();
    m_delivered = 0;
    m_silence = m_shift = 0;
    m_isPlaced = false;
    return fetch() && m_position <= frame && m_position >= 0;
}

void SoundStream::skipTo(qint64 frame)
{
    const auto channels = static_cast<size_t>(channelCount());
    while (m_position < frame) {
        if (m_silence == 0 && m_delivered == m_block.size() && !fetch())
            return;
        const qint64 silent = std::min(m_silence, frame - m_position);
        m_silence -= silent;
        m_position += silent;
        const auto left = static_cast<qint64>((m_block.size() - m_delivered) / channels);
        const qint64 skipped = m_silence > 0 ? 0 : std::min(left, frame - m_position);
        m_delivered += static_cast<size_t>(skipped) * channels;
        m_position += skipped;
    }
}

void SoundStream::seek(qint64 frame)
{
    const qint64 runUp = m_decoder.isIndependent() ? 0 : kRunUpFrames;
    // From further back where nothing comes or the file's own table leads astray, as near the end.
    bool isThere = false;
    for (const int seconds : {0, 1, 10}) {
        const qint64 start = frame - runUp - qint64(seconds) * m_sampleRate;
        isThere = start > 0 && goTo(start, frame);
        if (isThere || start <= 0)
            break;
    }
    if (!isThere)
        restart();
    skipTo(std::max<qint64>(0, frame));
}

/// Length by the times of the packets, for files whose head tells nothing that holds.
qint64 SoundStream::countPackets()
{
    restart();
    av::Owner<AVPacket> packet(av_packet_alloc());
    int64_t end = m_firstTime;
    while (m_input.next(*packet)) {
        if (packet->pts != AV_NOPTS_VALUE)
            end = std::max(end, packet->pts + packet->duration);
        av_packet_unref(packet.get());
    }
    return av_rescale_q(end - m_firstTime, m_input.stream().time_base, {1, m_sampleRate});
}

/// Where the sound truly ends, by its last packets; nothing where none are found before the stated end.
std::optional<qint64> SoundStream::endNear(qint64 stated)
{
    if (!goTo(std::max<qint64>(1, stated - m_sampleRate / 2), stated))
        return std::nullopt;
    skipTo(std::numeric_limits<qint64>::max());
    return m_position;
}

qint64 SoundStream::measure()
{
    if (const auto frames = m_input.trustedFrames())
        return *frames;
    std::optional<qint64> length;
    if (const int64_t stated = m_input.statedDuration(); stated != AV_NOPTS_VALUE)
        length = endNear(av_rescale_q(stated, m_input.stream().time_base, {1, m_sampleRate}));
    if (!length) {
        const qint64 counted = countPackets();
        length = endNear(counted).value_or(counted);
    }
    restart();
    return *length;
}
