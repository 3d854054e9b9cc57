#include "platform/audio/FrameConverter.h"

#include "platform/audio/AudioFileError.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace {

AVChannelLayout layoutOf(const AVFrame& frame)
{
    AVChannelLayout layout{};
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_NATIVE)
        return frame.ch_layout;
    av_channel_layout_default(&layout, frame.ch_layout.nb_channels);
    return layout;
}

void repeatOne(std::vector<float>& samples, int channelCount)
{
    const size_t count = samples.size();
    samples.resize(count * static_cast<size_t>(channelCount));
    for (size_t frame = count; frame-- > 0;)
        std::fill_n(samples.begin() + static_cast<std::ptrdiff_t>(frame) * channelCount, channelCount, samples[frame]);
}

} // namespace

FrameConverter::FrameConverter(const AVFrame& like, int channelCount)
    : m_sampleRate(like.sample_rate)
    , m_fileChannelCount(like.ch_layout.nb_channels)
    , m_channelCount(channelCount > 0 ? channelCount : m_fileChannelCount)
{
}

void FrameConverter::configure(const AVFrame& frame)
{
    if (m_converter && m_format == frame.format && m_frameRate == frame.sample_rate &&
        m_frameChannelCount == frame.ch_layout.nb_channels)
        return;
    m_format = frame.format;
    m_frameRate = frame.sample_rate;
    m_frameChannelCount = frame.ch_layout.nb_channels;
    AVChannelLayout in = layoutOf(frame);
    AVChannelLayout out{};
    // One channel stays one here and is repeated later: mixing it up would change its level.
    if (m_frameChannelCount == m_channelCount || m_frameChannelCount == 1)
        out = in;
    else
        av_channel_layout_default(&out, m_channelCount);
    SwrContext* converter = nullptr;
    const int result = swr_alloc_set_opts2(&converter, &out, AV_SAMPLE_FMT_FLT, m_sampleRate, &in,
                                           static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    m_converter.reset(converter);
    if (result < 0)
        throw AudioFileError(AudioFileError::Case::OutOfMemory);
    // Floats are not held to full scale by default, and the sum of channels would pass it.
    av_opt_set_double(converter, "rematrix_maxval", 1.0, 0);
    if (swr_init(converter) < 0)
        throw AudioFileError(AudioFileError::Case::NoAudio);
}

void FrameConverter::convert(const AVFrame& frame, std::vector<float>& into)
{
    configure(frame);
    const int delivered = m_frameChannelCount == 1 ? 1 : m_channelCount;
    const int room = swr_get_out_samples(m_converter.get(), frame.nb_samples);
    if (room < 0)
        throw AudioFileError(AudioFileError::Case::OutOfMemory);
    into.resize(static_cast<size_t>(room) * static_cast<size_t>(delivered));
    auto* out = reinterpret_cast<uint8_t*>(into.data());
    const int count =
        swr_convert(m_converter.get(), &out, room, const_cast<const uint8_t**>(frame.extended_data), frame.nb_samples);
    if (count < 0)
        throw AudioFileError(AudioFileError::Case::NoAudio);
    into.resize(static_cast<size_t>(count) * static_cast<size_t>(delivered));
    if (delivered != m_channelCount)
        repeatOne(into, m_channelCount);
}
