#pragma once

#include "analysis/decoding/DecoderError.h"
#include "platform/process/WorkerClock.h"

#include <QUrl>

#include <optional>
#include <stop_token>
#include <vector>

/// Samples of any audio file, decoded by the `ffmpeg` program: a damaged file costs a child process, never this one.
namespace AudioPCMDecoder {

/// The first audio stream as mono samples, all at once; see decodeMonoSamples() for their scale, for threads and stops.
/// \param sampleRate        of the result, in hertz.
/// \param maximumDuration   seconds from the start of the file, rounded up to whole ones; without it the whole file.
/// \param lowImpact         the decoder gives way to other programs and is looked after less often.
/// \param decoderExecutable what FFmpegExecutable::url() found.
/// \param timeout           wall-clock limit for the decoder.
/// \return                  at least one sample.
/// Errors: DecoderError; async::Cancelled; std::system_error when the decoder cannot be started or its output cannot be
/// created or read.
std::vector<float> monoSamples(const QUrl& from, int sampleRate, std::optional<double> maximumDuration, bool lowImpact,
                               const QUrl& decoderExecutable, async::Duration timeout, std::stop_token stop,
                               const WorkerClock& clock = WorkerClock::system());

} // namespace AudioPCMDecoder
