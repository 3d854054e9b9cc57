#pragma once

#include "WaveformScrubber/decoding/WaitClock.h"
#include "WaveformScrubber/shape/Envelope.h"
#include "platform/process/Descriptor.h"
#include "platform/process/OwnedTemporaryFile.h"

#include <QUrl>

#include <span>
#include <stop_token>

/// The whole sound of a file in one channel, on disk: in a file without a name, which goes with this object. One
/// thread at a time.
class MonoSamples {
public:
    /// Takes what a decoder wrote: 32-bit floats, little-endian; part of one at the end is dropped. The file may be
    /// deleted afterwards. Errors: AudioProcessingError (ChannelDataMissing), std::system_error.
    explicit MonoSamples(const QString& path);

    /// At least 1.
    qint64 count() const { return m_count; }
    /// The next samples, from the first on. \return how many; 0 at the end. Errors: std::system_error.
    std::size_t read(std::span<float> into);

private:
    Descriptor m_file;
    qint64 m_count = 0;
    qint64 m_position = 0;
};

/// Names of the files that decoders write: "velmora-waveform-", a UUID, ".pcm", in the folder for temporary files.
const OwnedTemporaryFile::Naming& waveformOutputNaming();

/// What decodeMonoSamples() is to do.
struct MonoDecoding {
    QUrl from;
    QString executable;                  ///< path of `ffmpeg`
    int sampleRate = 0;                  ///< hertz of the result
    LowImpact lowImpact = LowImpact::No; ///< lowest priority, 180 seconds instead of 90, looked after every 0.05
                                         ///< instead of 0.02 seconds
};

/// Decodes the first audio stream of a file by `ffmpeg`, mixed to one channel. Errors: AudioProcessingError;
/// async::Cancelled; std::system_error when the decoder cannot be started or its output not be created or read. Thread:
/// a worker, which is blocked. Stop: noticed at the next look, then takes as long as
/// WaveformProcessController::stop(). No file and no child is left, however it ends.
MonoSamples decodeMonoSamples(const MonoDecoding& decoding, const std::stop_token& stop,
                              const WaitClock& clock = WaitClock::system());
