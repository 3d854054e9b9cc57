#include "WaveformScrubber/decoding/AudioProcessingError.h"

QLatin1StringView AudioProcessingError::caseName() const
{
    switch (m_case) {
    case Case::BufferCreationFailed:
        return QLatin1StringView("bufferCreationFailed");
    case Case::DecodingFailed:
        return QLatin1StringView("decodingFailed");
    case Case::TimedOut:
        return QLatin1StringView("timedOut");
    }
    return {};
}
