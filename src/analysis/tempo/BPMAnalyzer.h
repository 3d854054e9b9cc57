#pragma once

#include "analysis/tempo/BPMError.h"
#include "core/model/TempoEstimate.h"
#include "platform/process/WorkerClock.h"

#include <QUrl>

#include <optional>
#include <span>
#include <stop_token>

/// Estimates the tempo of dance music: a whole number from 70 to 140 BPM, how sure that is, and what else it might be.
/// Steps: eight sections of the track; five onset series of each; scores of every lag by autocorrelation and by
/// intervals of peaks; ranking by agreement, harmonics and a grid of beats; rules for octaves and three-to-four errors.
/// docs/tempo.md derives them. No state is kept between calls. Thread: a worker, which is blocked; any number at a
/// time. Stop: noticed within a few milliseconds; then async::Cancelled, never a partial result.
namespace BPMAnalyzer {

using Estimate = TempoEstimate;

/// Tempo of the first 132 s of a file.
/// \param minimum, maximum   tempos to look for, in BPM; lags of tempos up to 280 BPM are always looked at, and the
///                           result is folded to at most 140.
/// \param lowImpact          rests for 1 ms after each 3 ms of work.
/// \param decoderLowPriority the decoder gives way to other programs; without it, as \p lowImpact.
/// Errors: Error; what AudioPCMDecoder::monoSamples() throws, and its DecoderError when there is no decoder.
Estimate estimateDetailed(const QUrl& url, double minimum, double maximum, bool lowImpact,
                          std::optional<bool> decoderLowPriority, std::stop_token stop,
                          const WorkerClock& clock = WorkerClock::system());

/// Tempo of mono samples at 11,025 Hz, at any level. Those that are not finite or beyond any sound count as silence.
/// Errors: Error.
Estimate estimateDetailed(std::span<const float> samples, double minimum, double maximum, bool lowImpact,
                          std::stop_token stop, const WorkerClock& clock = WorkerClock::system());

} // namespace BPMAnalyzer
