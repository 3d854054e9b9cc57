#pragma once

#include "analysis/decoding/DecoderError.h"
#include "analysis/decoding/WorkerClock.h"

#include <QUrl>

#include <optional>
#include <stop_token>
#include <vector>

/// Samples of any audio file, decoded by the `ffmpeg` program: a damaged file costs a child process, never this one.
namespace AudioPCMDecoder {

/// The first audio stream as mono samples: those of a mono file at full scale 1, of a stereo file the sum of both
/// channels times 0.707, which can pass 1.
/// \param from              the audio file.
/// \param sampleRate        of the result, in hertz.
/// \param maximumDuration   seconds from the start of the file, rounded up to whole ones; without it, and for values
///                          that are not above 0, the whole file.
/// \param lowImpact         the decoder gives way to other programs and is looked after less often.
/// \param decoderExecutable what FFmpegExecutable::url() found.
/// \param timeout           wall-clock limit for the decoder.
/// \return                  at least one sample.
/// Errors: DecoderError; async::Cancelled; std::system_error when the decoder cannot be started or its output cannot be
/// created or read. Thread: a worker, which is blocked; any number at a time. Stop: noticed within 0.05 s, then takes
/// as long as DecoderProcessController::stop(). No temporary file and no child is left, however it ends.
std::vector<float> monoSamples(const QUrl& from, int sampleRate, std::optional<double> maximumDuration, bool lowImpact,
                               const QUrl& decoderExecutable, async::Duration timeout, std::stop_token stop,
                               const WorkerClock& clock = WorkerClock::system());

} // namespace AudioPCMDecoder
