#pragma once

#include "platform/audio/FrameConverter.h"
#include "platform/audio/MediaInput.h"
#include "platform/audio/PacketDecoder.h"

#include <optional>
#include <span>

/// The sound of one file at the file's rate, from its first audible frame on: knows at every moment which frame it
/// stands at, fills gaps of the stream with silence and goes to any frame exactly.
class SoundStream {
public:
    /// Decodes the first frame, which tells rate and channels. \param channelCount of what is delivered; 0 as in the
    /// file.
    /// Errors: AudioFileError; NoAudio also for more than 64 channels and for rates outside 1 kHz to 1.536 MHz.
    SoundStream(std::shared_ptr<FileImage> image, int channelCount);

    /// Hertz and channels of the first frame, whatever comes behind it.
    int sampleRate() const { return m_sampleRate; }
    int fileChannelCount() const { return m_fileChannelCount; }
    int channelCount() const { return m_converter->channelCount(); }
    /// The frame that the next read() begins with, counted from the first audible one.
    qint64 position() const { return m_position; }

    /// The next frames, interleaved. Gaps of up to 10 seconds between packets become silence; a longer jump of the
    /// timestamps is taken for a fault and passed over. Errors: AudioFileError when the file can no longer be
    /// decoded.
    /// \return frames written; fewer than there is room for only at the end
    qint64 read(std::span<float> into);
    /// Goes to a frame, exactly: decoding begins some frames before it. Beyond the end the stream stands at its end.
    /// Errors: AudioFileError.
    void seek(qint64 frame);
    /// Length in frames: told by the file where that holds, else counted, which goes over all packets. Leaves the
    /// stream at its beginning; to be called before the first read(). Errors: AudioFileError.
    qint64 measure();

private:
    bool fetch();
    void place(const AVFrame& frame);
    void begin(const AVFrame& first);
    qint64 frameOf(const AVFrame& frame) const;
    bool goTo(qint64 start, qint64 frame);
    void restart();
    void skipTo(qint64 frame);
    qint64 take(std::span<float> into);
    qint64 countPackets();
    std::optional<qint64> endNear(qint64 stated);

    MediaInput m_input;
    PacketDecoder m_decoder;
    std::optional<FrameConverter> m_converter;
    int m_sampleRate = 0;
    int m_fileChannelCount = 0;
    int64_t m_firstTime = 0; ///< of the first audible frame, in the stream's time base

    qint64 m_position = 0;      ///< frame that the next read begins with
    bool m_isPlaced = false;    ///< the position of what comes next is known
    qint64 m_shift = 0;         ///< frames by which timestamps are corrected after a jump
    qint64 m_silence = 0;       ///< frames of silence to deliver before the block
    std::vector<float> m_block; ///< decoded and not yet delivered
    size_t m_delivered = 0;     ///< floats of the block that are gone
};
