#pragma once

#include "platform/audio/AudioFileError.h"

#include <QString>

#include <memory>
#include <span>

class FileImage;

/// Decodes one audio file in the process, from front to back or from any frame. A frame is one sample of every channel.
/// Frame 0 is the first one that is meant to be heard: encoder delay in front and padding behind are left out. One
/// object per thread.
class AudioFileReader {
public:
    /// What is delivered; 0 means as in the file.
    struct Wanted {
        int sampleRate = 0;   ///< hertz; resampled where the file has another
        int channelCount = 0; ///< mixed down where the file has more; one channel is repeated where it has one
    };

    /// Errors: AudioFileError. Blocks for as long as reading the file's head takes, and for a pass over all packets
    /// where the container does not tell the length reliably.
    static std::unique_ptr<AudioFileReader> open(std::shared_ptr<FileImage> image, const Wanted& wanted);
    static std::unique_ptr<AudioFileReader> open(const QString& path, const Wanted& wanted);
    ~AudioFileReader();
    AudioFileReader(const AudioFileReader&) = delete;
    AudioFileReader& operator=(const AudioFileReader&) = delete;

    int sampleRate() const;   ///< hertz, of what is delivered
    int channelCount() const; ///< of what is delivered
    /// Hertz, as the decoder delivers the file's first frame.
    int fileSampleRate() const;
    /// Channels of the file's first frame, before any mixing.
    int fileChannelCount() const;
    /// Length in delivered frames, at least 0. Becomes the true one when the end is met, should the container have told
    /// another.
    qint64 frameCount() const;
    /// The frame that the next read begins with.
    qint64 position() const;

    /// The next frames, interleaved, full scale at 1. Damaged packets are passed over, their time filled with silence.
    /// \param into room for whole frames. \return frames written; fewer than asked for only at the end, then 0. A file
    /// that can no longer be read ends there.
    qint64 read(std::span<float> into);
    /// Whether the end came early because the file could no longer be read. Stays so: nothing is read after that.
    bool hasFailed() const;
    /// Goes to a frame, exact to the sample in every format; before the beginning means the beginning, beyond the end
    /// the end. Takes longest, a walk over all packets, with the first seek in a bare stream without an index.
    void seek(qint64 frame);

private:
    struct State;
    explicit AudioFileReader(std::unique_ptr<State> state);

    std::unique_ptr<State> m_state;
};
