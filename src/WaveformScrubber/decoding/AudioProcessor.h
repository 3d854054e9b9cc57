#pragma once

#include "WaveformScrubber/shape/Envelope.h"
#include "platform/process/OwnedTemporaryFile.h"
#include "platform/process/WorkerClock.h"

#include <QUrl>

#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

/// Computes envelopes: by the `ffmpeg` program where there is one, which takes the crash of a damaged file with it,
/// else by the program's own reader.
namespace AudioProcessor {

/// What the computation finds around it.
struct Surroundings {
    std::function<std::optional<QUrl>()> findExecutable; ///< of `ffmpeg`; called on the worker
    WorkerClock clock;

    /// This computer.
    static Surroundings system();
};

/// Names of the files that `ffmpeg` fills: "velmora-waveform-", a UUID, ".pcm", in the folder for temporary files.
const OwnedTemporaryFile::Naming& outputNaming();
/// Longest time that `ffmpeg` has for one file, with low impact; usually it has half of it.
constexpr std::chrono::seconds kLongestTimeout{180};

/// \p sampleCount values of the file's sound, from 0 to 1. An end of `ffmpeg` other than Cancelled and TimedOut leads
/// to the direct reader. Errors: AudioProcessingError, AudioFileError, async::Cancelled. Thread: a worker, which is
/// blocked; any number at a time. Memory: below 1 MiB for `ffmpeg`'s output, else as the direct reader.
std::vector<float> extractEnvelope(const QUrl& from, int sampleCount, LowImpact lowImpact, const std::stop_token& stop,
                                   const Surroundings& surroundings = Surroundings::system());

/// The same by the program's own reader alone: all channels at the file's rate, block by block, so that neither the
/// file nor its sound is held. Empty for a count below 1. Errors: AudioFileError, AudioProcessingError
/// (BufferCreationFailed), async::Cancelled. Stop: polled every 32,768 frames.
std::vector<float> extractEnvelopeDirectly(const QUrl& from, int sampleCount, LowImpact lowImpact,
                                           const std::stop_token& stop,
                                           const WorkerClock& clock = WorkerClock::system());

} // namespace AudioProcessor
