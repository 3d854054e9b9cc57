#pragma once

#include "platform/audio/AVHandles.h"

#include <vector>

/// Brings decoded frames into one shape: interleaved floats of a fixed number of channels at a fixed rate, whatever the
/// decoder's format and even if it changes within a file.
class FrameConverter {
public:
    /// \param channelCount of what is delivered; 0 as in \p like. More channels are mixed down so that nothing clips,
    /// one is repeated.
    FrameConverter(const AVFrame& like, int channelCount);

    /// Of what is delivered; at least 1.
    int channelCount() const { return m_channelCount; }
    /// Replaces the content of \p into by the frame's sound. Errors: AudioFileError (NoAudio, OutOfMemory).
    void convert(const AVFrame& frame, std::vector<float>& into);

private:
    void configure(const AVFrame& frame);

    av::Owner<SwrContext> m_converter;
    int m_sampleRate;
    int m_fileChannelCount;
    int m_channelCount;
    // What the converter is set up for.
    int m_format = -1;
    int m_frameRate = 0;
    int m_frameChannelCount = 0;
};
