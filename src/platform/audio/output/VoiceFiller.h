#pragma once

#include "platform/audio/output/PlaybackVoice.h"

#include <memory>
#include <optional>

class AudioFileReader;
class FileImage;

/// Brings the decoded file into its voice, a little ahead of the device. Thread: the engine's.
class VoiceFiller {
public:
    /// Sound that is decoded ahead. Chosen: outlasts whatever may keep this thread from the processor.
    static constexpr double kAheadSeconds = 2.0;

    /// \param reader delivers two channels.
    VoiceFiller(std::shared_ptr<FileImage> image, std::unique_ptr<AudioFileReader> reader, PlaybackVoice& voice);
    ~VoiceFiller();

    /// Hertz of what the voice gets.
    int sampleRate() const;
    /// Hertz of the file itself.
    int fileSampleRate() const;
    double duration() const; ///< seconds
    /// The number of the jump that was made last.
    uint32_t lastJump() const { return m_jump; }

    /// Goes to a place, kept within the file, decodes the first 60 ms and lets the voice have it. Blocks for that
    /// long.
    /// \param jump the number of the voice's jump that this answers
    void jump(double seconds, uint32_t jump);
    /// Goes on at another rate where it is. Only while no callback renders the voice.
    /// Errors: AudioFileError when the file cannot be opened that way.
    void retune(int sampleRate);
    /// Decodes at most 4096 frames, where there is room for as many. \return whether there is more to decode right
    /// now.
    bool fill();
    /// Seconds until what was decoded is used up, where that is all there is; nothing before the end is known.
    std::optional<double> secondsToEnd() const;

private:
    void fillUpTo(int64_t frames);
    void decode(int64_t frames);

    std::shared_ptr<FileImage> m_image;
    std::unique_ptr<AudioFileReader> m_reader;
    PlaybackVoice& m_voice;
    VoiceSegment* m_segment = nullptr;
    int64_t m_framesIn = 0; ///< frames decoded into the segment
    uint32_t m_jump = 0;
    double m_target = 0; ///< seconds, of the last jump
    bool m_isAtEnd = false;
};
