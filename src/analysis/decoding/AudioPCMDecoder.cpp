#include "analysis/decoding/AudioPCMDecoder.h"

#include "analysis/decoding/TemporarySweep.h"
#include "platform/process/MonoSamples.h"

namespace AudioPCMDecoder {

namespace {

DecoderError errorOf(MonoDecodingError::Case what)
{
    switch (what) {
    case MonoDecodingError::Case::DecodingFailed:
        break;
    case MonoDecodingError::Case::TimedOut:
        return DecoderError(DecoderError::Case::TimedOut);
    case MonoDecodingError::Case::NoSamples:
        return DecoderError(DecoderError::Case::EmptyAudio);
    }
    return DecoderError(DecoderError::Case::DecodingFailed);
}

} // namespace

std::vector<float> monoSamples(const QUrl& from, int sampleRate, std::optional<double> maximumDuration, bool lowImpact,
                               const QUrl& decoderExecutable, async::Duration timeout, std::stop_token stop,
                               const WorkerClock& clock)
{
    const MonoDecoding decoding{.from = from,
                                .executable = decoderExecutable,
                                .sampleRate = sampleRate,
                                .maximumDuration = maximumDuration,
                                .isLowImpact = lowImpact,
                                .timeout = timeout,
                                .output = TemporarySweep::decoderOutput()};
    try {
        MonoSamples sound = decodeMonoSamples(decoding, stop, clock);
        std::vector<float> samples(std::size_t(sound.count()));
        sound.read(samples);
        return samples;
    } catch (const MonoDecodingError& error) {
        throw errorOf(error.which());
    }
}

} // namespace AudioPCMDecoder
