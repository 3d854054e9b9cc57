#include "WaveformScrubber/decoding/AudioProcessor.h"

#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "WaveformScrubber/shape/EnvelopeBuilder.h"
#include "async/Cancelled.h"
#include "platform/FileURL.h"
#include "platform/audio/AudioFileReader.h"
#include "platform/audio/FileImage.h"
#include "platform/process/FFmpegExecutable.h"
#include "platform/process/MonoSamples.h"

#include <algorithm>
#include <new>

namespace AudioProcessor {

namespace {

/// Chosen: enough for the eye, and a tenth of the data of stereo at 44.1 kHz.
constexpr int kSampleRate = 8000;
constexpr qint64 kBlockFrames = 32768;
constexpr std::chrono::seconds kUsualTimeout{90};
constexpr async::Duration kLowImpactPause = async::seconds(0.001);

std::vector<float> buffer(std::size_t count)
{
    try {
        return std::vector<float>(count);
    } catch (const std::bad_alloc&) {
        throw AudioProcessingError(AudioProcessingError::Case::BufferCreationFailed);
    }
}

std::vector<float> envelopeOf(MonoSamples samples, int sampleCount, const std::stop_token& stop)
{
    EnvelopeBuilder builder(samples.count(), sampleCount, 1);
    std::vector<float> block = buffer(std::size_t(kBlockFrames));
    while (const std::size_t count = samples.read(block)) {
        if (stop.stop_requested())
            throw async::Cancelled();
        builder.add(std::span(block).first(count));
    }
    return builder.envelope();
}

/// Nothing when the program fails in a way that leaves the file to the direct reader.
std::optional<std::vector<float>> envelopeByProgram(const MonoDecoding& decoding, int sampleCount,
                                                    const std::stop_token& stop, const WorkerClock& clock)
{
    try {
        return envelopeOf(decodeMonoSamples(decoding, stop, clock), sampleCount, stop);
    } catch (const async::Cancelled&) {
        throw;
    } catch (const MonoDecodingError& error) {
        if (error.which() == MonoDecodingError::Case::TimedOut)
            throw AudioProcessingError(AudioProcessingError::Case::TimedOut);
    } catch (const std::exception&) { // not startable, no room for its output, ...
    }
    return std::nullopt;
}

} // namespace

const OwnedTemporaryFile::Naming& outputNaming()
{
    static const OwnedTemporaryFile::Naming kNaming{QStringLiteral("velmora-waveform-"), QStringLiteral(".pcm")};
    return kNaming;
}

Surroundings Surroundings::system()
{
    return {.findExecutable = &FFmpegExecutable::url, .clock = WorkerClock::system()};
}

std::vector<float> extractEnvelope(const QUrl& from, int sampleCount, LowImpact lowImpact, const std::stop_token& stop,
                                   const Surroundings& surroundings)
{
    if (sampleCount < 1)
        return {};
    if (const std::optional<QUrl> executable = surroundings.findExecutable()) {
        const bool isLow = lowImpact == LowImpact::Yes;
        const MonoDecoding decoding{.from = from,
                                    .executable = *executable,
                                    .sampleRate = kSampleRate,
                                    .isLowImpact = isLow,
                                    .timeout = isLow ? kLongestTimeout : kUsualTimeout,
                                    .output = outputNaming()};
        if (auto envelope = envelopeByProgram(decoding, sampleCount, stop, surroundings.clock))
            return std::move(*envelope);
    }
    return extractEnvelopeDirectly(from, sampleCount, lowImpact, stop, surroundings.clock);
}

std::vector<float> extractEnvelopeDirectly(const QUrl& from, int sampleCount, LowImpact lowImpact,
                                           const std::stop_token& stop, const WorkerClock& clock)
{
    if (sampleCount < 1)
        return {};
    const auto reader = AudioFileReader::open(FileImage::open(FileURL::standardizedPath(from), 0), {});
    const qint64 total = std::max<qint64>(1, reader->frameCount());
    const auto channels = std::size_t(reader->channelCount());
    EnvelopeBuilder builder(total, sampleCount, int(channels));
    std::vector<float> block = buffer(std::size_t(kBlockFrames) * channels);
    while (reader->position() < total) {
        if (stop.stop_requested())
            throw async::Cancelled();
        const qint64 count = reader->read(block);
        if (count == 0)
            break;
        builder.add(std::span(block).first(std::size_t(count) * channels));
        if (lowImpact == LowImpact::Yes)
            clock.sleep(kLowImpactPause);
    }
    if (reader->hasFailed()) // the shape of half a file must not be kept as that of the whole
        throw AudioProcessingError(AudioProcessingError::Case::DecodingFailed);
    return builder.envelope();
}

} // namespace AudioProcessor
