// Up to eight sections of the track; each becomes a chroma of 36 bins (ChromaProfile), is brought to its tuning
// (Tuning) and weighed by how clearly it speaks of a key (KeyScores). The estimate from them is in KeyEstimate.cpp.

#include "analysis/key/MusicalKeyAnalyzer.h"

#include "analysis/decoding/AudioPCMDecoder.h"
#include "analysis/key/AnalysisRanges.h"
#include "analysis/key/KeyScores.h"
#include "analysis/key/Tuning.h"
#include "async/Cancelled.h"
#include "platform/process/FFmpegExecutable.h"

#include <stdexcept>

namespace MusicalKeyAnalyzer {

namespace {

// Chosen: twice the highest frequency that is listened to with room to spare; three minutes hold enough of a track;
// a decoder that takes longer for them hangs.
constexpr int kSampleRate = 22050;
constexpr double kMaximumDuration = 180; ///< seconds
constexpr async::Duration kTimeout = async::seconds(30);

ChromaListener makeListener(int sampleRate, bool lowImpact, const std::stop_token& stop, const WorkerClock& clock)
{
    try {
        return ChromaListener(sampleRate, lowImpact, stop, clock);
    } catch (const std::runtime_error&) {
        throw Error(Error::Case::NoTransform);
    }
}

} // namespace

MusicalKeyFeatureVector features(const QUrl& url, bool lowImpact, std::stop_token stop, const WorkerClock& clock)
{
    using AudioPCMDecoder::DecoderError;
    const std::optional<QUrl> decoder = FFmpegExecutable::url();
    if (!decoder)
        throw DecoderError(DecoderError::Case::FFmpegUnavailable);
    const std::vector<float> samples =
        AudioPCMDecoder::monoSamples(url, kSampleRate, kMaximumDuration, lowImpact, *decoder, kTimeout, stop, clock);
    return features(samples, kSampleRate, lowImpact, stop, clock);
}

MusicalKeyFeatureVector features(std::span<const float> samples, int sampleRate, bool lowImpact, std::stop_token stop,
                                 const WorkerClock& clock)
{
    if (sampleRate <= 0 || samples.size() < kFrameSize)
        throw Error(Error::Case::TooLittleAudio,
                    QStringLiteral("Недостаточно аудиоданных для определения тональности."));
    ChromaListener listener = makeListener(sampleRate, lowImpact, stop, clock);
    MusicalKeyFeatureVector features;
    for (const AnalysisRange& range : analysisRanges(samples.size(), sampleRate)) {
        if (stop.stop_requested())
            throw async::Cancelled();
        const std::optional<ChromaProfile> profile = listener.profile(samples.subspan(range.start, range.length));
        if (!profile)
            continue;
        const TunedChroma tuning = tuned(*profile);
        features.sections.push_back(
            {tuning.chroma, tuning.bassChroma, tuning.tuningCents, tonalQuality(tuning.chroma)});
    }
    if (features.sections.empty())
        throw Error(Error::Case::NoHarmony, QStringLiteral("Не удалось выделить устойчивую гармонию в аудиофайле."));
    return features;
}

} // namespace MusicalKeyAnalyzer
