#include "platform/audio/RateConverter.h"

#include "platform/audio/AudioFileError.h"

RateConverter::RateConverter(int from, int to, int channelCount)
    : m_channelCount(static_cast<size_t>(channelCount))
{
    AVChannelLayout layout{};
    layout.order = AV_CHANNEL_ORDER_UNSPEC;
    layout.nb_channels = channelCount;
    SwrContext* converter = nullptr;
    const int result =
        swr_alloc_set_opts2(&converter, &layout, AV_SAMPLE_FMT_FLT, to, &layout, AV_SAMPLE_FMT_FLT, from, 0, nullptr);
    m_converter.reset(converter);
    if (result < 0)
        throw AudioFileError(AudioFileError::Case::OutOfMemory);
    reset();
}

void RateConverter::convert(std::span<const float> in, std::vector<float>& out)
{
    const int frames = static_cast<int>(in.size() / m_channelCount);
    const int room = swr_get_out_samples(m_converter.get(), frames);
    if (room < 0)
        throw AudioFileError(AudioFileError::Case::OutOfMemory);
    const size_t before = out.size();
    out.resize(before + static_cast<size_t>(room) * m_channelCount);
    auto* to = reinterpret_cast<uint8_t*>(out.data() + before);
    const auto* from = reinterpret_cast<const uint8_t*>(in.data());
    const int count = swr_convert(m_converter.get(), &to, room, frames > 0 ? &from : nullptr, frames);
    out.resize(before + static_cast<size_t>(std::max(0, count)) * m_channelCount);
}

void RateConverter::reset()
{
    swr_close(m_converter.get());
    if (swr_init(m_converter.get()) < 0)
        throw AudioFileError(AudioFileError::Case::NoAudio);
}
