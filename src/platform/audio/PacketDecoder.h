#pragma once

#include "platform/audio/AVHandles.h"

class MediaInput;

/// Turns the packets of one stream into frames of sound, on the calling thread.
class PacketDecoder {
public:
    /// Errors: AudioFileError (NoAudio) where there is no decoder for the stream.
    explicit PacketDecoder(const AVStream& stream);

    /// The next frame; null at the end. Packets that cannot be decoded are passed over. Valid until the next call.
    const AVFrame* next(MediaInput& input);
    /// Forgets what was decoded, after the input has gone elsewhere.
    void flush();
    /// Packets depend on nothing before them.
    bool isIndependent() const { return m_isIndependent; }

private:
    void feed(MediaInput& input);

    av::Owner<AVCodecContext> m_codec;
    av::Owner<AVPacket> m_packet;
    av::Owner<AVFrame> m_frame;
    bool m_isIndependent = false;
    bool m_isDraining = false;
};
