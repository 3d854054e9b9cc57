#pragma once

#include "platform/process/OwnedTemporaryFile.h"
#include "platform/process/WorkerClock.h"

#include <QUrl>

#include <exception>
#include <optional>
#include <span>
#include <stop_token>

/// The sound of a file in one channel, on disk: in a file without a name, which goes with this object. One thread at a
/// time.
class MonoSamples {
public:
    /// Takes what a decoder wrote: 32-bit floats, little-endian; part of one at the end is dropped. The file may be
    /// deleted afterwards. Errors: MonoDecodingError (NoSamples), std::system_error.
    explicit MonoSamples(const QString& path);

    /// At least 1.
    qint64 count() const { return m_count; }
    /// The next samples, from the first on, in the machine's own byte order. \return how many; 0 at the end. Errors:
    /// std::system_error, also for a file that has become shorter.
    std::size_t read(std::span<float> into);

private:
    Descriptor m_file;
    qint64 m_count = 0;
    qint64 m_position = 0;
};

/// Why `ffmpeg` gave no sound. Callers turn it into the errors of their own.
class MonoDecodingError : public std::exception {
public:
    enum class Case {
        DecodingFailed, ///< it ended with a status other than 0
        TimedOut,       ///< it was stopped at the limit
        NoSamples,      ///< not even one sample came out
    };

    explicit MonoDecodingError(Case what)
        : m_case(what)
    {
    }

    Case which() const { return m_case; }
    const char* what() const noexcept override { return "ffmpeg gave no sound"; }

private:
    Case m_case;
};

/// What decodeMonoSamples() is to do.
struct MonoDecoding {
    QUrl from;
    QUrl executable;                            ///< what FFmpegExecutable::url() found
    int sampleRate = 0;                         ///< hertz of the result
    std::optional<double> maximumDuration = {}; ///< seconds from the start, rounded up to whole ones; all without it,
                                                ///< and for values that are not finite or not above 0
    bool isLowImpact = false;                   ///< nice value 10, not 5; looked after every 0.05 s, not 0.02
    async::Duration timeout = {};               ///< wall-clock limit for `ffmpeg`
    OwnedTemporaryFile::Naming output = {};     ///< of the file that `ffmpeg` fills
};

/// Decodes the first audio stream of a file by `ffmpeg`: the samples of a mono file at full scale 1, of a stereo file
/// the sum of both channels times 0.707, which can pass 1. Errors: MonoDecodingError; async::Cancelled;
/// std::system_error when `ffmpeg` cannot be started or its output not be created or read. Thread: a worker, which is
/// blocked; any number at a time. Stop: noticed at the next look, then takes as long as
/// DecoderProcessController::stop(). No file and no child is left, however it ends.
MonoSamples decodeMonoSamples(const MonoDecoding& decoding, const std::stop_token& stop,
                              const WorkerClock& clock = WorkerClock::system());
