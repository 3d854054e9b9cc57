#pragma once

#include "analysis/key/MusicalKeyError.h"
#include "analysis/key/MusicalKeyFeatureVector.h"
#include "core/model/MusicalKey.h"
#include "platform/process/WorkerClock.h"

#include <QUrl>

#include <span>
#include <stop_token>

/// Estimates the key of a track, in two stages: the sound becomes a small record, and the record a key. Both depend on
/// nothing but their arguments. docs/key.md tells the steps. Thread: any, any number at a time.
namespace MusicalKeyAnalyzer {

/// One key in the running.
struct Candidate {
    MusicalKey key;
    double score = 0;            ///< -1 to 1
    double sectionAgreement = 0; ///< share of the sections that are for this key by themselves
};

/// Decodes up to three minutes of a file and listens to them; blocks its thread.
/// \param lowImpact   gives way to other programs.
/// Errors: AudioPCMDecoder::DecoderError and std::system_error as the decoder has them; Error with the first, the
/// second and the last case; async::Cancelled. Stop: as soon as the decoder's, after it within twelve frames, about 1
/// ms.
MusicalKeyFeatureVector features(const QUrl& url, bool lowImpact, std::stop_token stop,
                                 const WorkerClock& clock = WorkerClock::system());
/// The same from mono samples at any level. \param sampleRate   in hertz.
MusicalKeyFeatureVector features(std::span<const float> samples, int sampleRate, bool lowImpact, std::stop_token stop,
                                 const WorkerClock& clock = WorkerClock::system());
/// The key that fits best, and the next ones. Errors: Error, without a message, without sections and for numbers that
/// give no score. Takes well below 1 ms.
MusicalKeyAnalysis estimate(const MusicalKeyFeatureVector& features);

} // namespace MusicalKeyAnalyzer
