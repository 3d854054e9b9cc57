#include "platform/audio/PacketDecoder.h"

#include "platform/audio/AudioFileError.h"
#include "platform/audio/MediaInput.h"

PacketDecoder::PacketDecoder(const AVStream& stream)
    : m_packet(av_packet_alloc())
    , m_frame(av_frame_alloc())
{
    const AVCodec* decoder = avcodec_find_decoder(stream.codecpar->codec_id);
    if (!decoder)
        throw AudioFileError(AudioFileError::Case::NoAudio);
    m_codec.reset(avcodec_alloc_context3(decoder));
    if (!m_codec || !m_packet || !m_frame)
        throw AudioFileError(AudioFileError::Case::OutOfMemory);
    if (avcodec_parameters_to_context(m_codec.get(), stream.codecpar) < 0)
        throw AudioFileError(AudioFileError::Case::NoAudio);
    m_codec->pkt_timebase = stream.time_base;
    m_codec->thread_count = 1;
    if (avcodec_open2(m_codec.get(), decoder, nullptr) < 0)
        throw AudioFileError(AudioFileError::Case::NoAudio);
    const AVCodecDescriptor* codec = avcodec_descriptor_get(stream.codecpar->codec_id);
    m_isIndependent = codec && !(codec->props & AV_CODEC_PROP_LOSSY) && (codec->props & AV_CODEC_PROP_LOSSLESS);
}

const AVFrame* PacketDecoder::next(MediaInput& input)
{
    for (;;) {
        const int result = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (result == 0 && m_frame->nb_samples > 0)
            return m_frame.get();
        if (result == 0)
            continue;
        if (result == AVERROR(ENOMEM))
            throw AudioFileError(AudioFileError::Case::OutOfMemory);
        // A decoder that fails while it is drained has nothing more to give.
        if (result == AVERROR_EOF || m_isDraining)
            return nullptr;
        feed(input);
    }
}

void PacketDecoder::feed(MediaInput& input)
{
    if (!input.next(*m_packet)) {
        m_isDraining = true;
        avcodec_send_packet(m_codec.get(), nullptr);
        return;
    }
    // A refused packet is a damaged one: the next packet's time shows the gap.
    avcodec_send_packet(m_codec.get(), m_packet.get());
    av_packet_unref(m_packet.get());
}

void PacketDecoder::flush()
{
    avcodec_flush_buffers(m_codec.get());
    m_isDraining = false;
}
