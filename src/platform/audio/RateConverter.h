#pragma once

#include "platform/audio/AVHandles.h"

#include <span>
#include <vector>

/// Brings interleaved floats from one sample rate to another, without delay: output frame n belongs to the time of
/// input frame n * from / to.
class RateConverter {
public:
    /// \param from hertz of what comes in; \p to of what goes out. \param channelCount kept as it is.
    /// Errors: AudioFileError (OutOfMemory, NoAudio for rates that cannot be converted).
    RateConverter(int from, int to, int channelCount);

    /// Appends what these frames give, which may be nothing yet. Errors: AudioFileError (OutOfMemory).
    /// \param in interleaved; empty for the end, which brings out what is left
    void convert(std::span<const float> in, std::vector<float>& out);
    /// Forgets all input, for another place in the sound. Errors: AudioFileError (NoAudio).
    void reset();

private:
    av::Owner<SwrContext> m_converter;
    size_t m_channelCount;
};
