#pragma once

#include "platform/audio/AVHandles.h"

class MediaInput;

/// Turns the packets of one stream into frames of sound, on the calling thread. Movable; a new one starts without any
/// memory of what was decoded before, which flush() cannot promise for every decoder.
class PacketDecoder {
public:
    /// \param stream is read here and not kept.
    /// Errors: AudioFileError (NoAudio) where there is no decoder for the stream, OutOfMemory.
    explicit PacketDecoder(const AVStream& stream);

    /// The next frame with sound in it; null at the end, and from then on until flush(). Packets that cannot be
    /// decoded are passed over. The frame belongs to the decoder and is valid until the next call. Errors:
    /// AudioFileError (OutOfMemory).
    const AVFrame* next(MediaInput& input);
    /// Forgets what was decoded, after the input has gone elsewhere.
    void flush();
    /// Whether packets depend on nothing before them, as with lossless codecs: decoding may begin at any of them.
    bool isIndependent() const { return m_isIndependent; }

private:
    void feed(MediaInput& input);

    av::Owner<AVCodecContext> m_codec;
    av::Owner<AVPacket> m_packet;
    av::Owner<AVFrame> m_frame;
    bool m_isIndependent = false;
    bool m_isDraining = false;
};
