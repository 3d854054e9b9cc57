#include "analysis/decoding/AudioPCMDecoder.h"

#include "analysis/decoding/DecoderProcessController.h"
#include "analysis/decoding/TemporarySweep.h"
#include "async/Cancelled.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

#include <cerrno>
#include <cmath>
#include <system_error>

namespace AudioPCMDecoder {

namespace {

// Nice values of the executor's threads for work of the same two kinds. 10 leaves a decoder about a tenth of a
// processor that somebody else wants; 19 would starve it into its time-out on a busy computer.
constexpr int kLowImpactNiceness = 10;
constexpr int kUsualNiceness = 5;

QStringList argumentsFor(const QUrl& from, int sampleRate, std::optional<double> maximumDuration, const QString& output)
{
    // One thread, so that work in the background never takes several processors; damaged parts are skipped.
    QStringList arguments{QStringLiteral("-nostdin"),
                          QStringLiteral("-y"),
                          QStringLiteral("-v"),
                          QStringLiteral("error"),
                          QStringLiteral("-threads"),
                          QStringLiteral("1"),
                          QStringLiteral("-filter_threads"),
                          QStringLiteral("1"),
                          QStringLiteral("-fflags"),
                          QStringLiteral("+discardcorrupt"),
                          QStringLiteral("-err_detect"),
                          QStringLiteral("ignore_err"),
                          QStringLiteral("-i"),
                          from.toLocalFile(),
                          QStringLiteral("-map"),
                          QStringLiteral("0:a:0"),
                          QStringLiteral("-vn"),
                          QStringLiteral("-sn"),
                          QStringLiteral("-dn")};
    if (maximumDuration && std::isfinite(*maximumDuration) && *maximumDuration > 0)
        arguments << QStringLiteral("-t") << QString::number(std::ceil(*maximumDuration), 'f', 0);
    arguments << QStringLiteral("-ac") << QStringLiteral("1") << QStringLiteral("-ar") << QString::number(sampleRate)
              << QStringLiteral("-f") << QStringLiteral("f32le") << output;
    return arguments;
}

/// Waits for the decoder's end. Throws Cancelled and TimedOut, then without the decoder.
void waitForEnd(DecoderProcessController& decoder, async::Duration deadline, async::Duration interval,
                const WorkerClock& clock, const std::stop_token& stop)
{
    while (decoder.isRunning()) {
        if (stop.stop_requested()) {
            decoder.stop();
            throw async::Cancelled();
        }
        if (clock.now() >= deadline) {
            decoder.stop();
            throw DecoderError(DecoderError::Case::TimedOut);
        }
        clock.sleep(interval);
    }
}

/// The system's reason for the last failure, an input-output error where it gave none.
std::system_error unreadable()
{
    return std::system_error(errno != 0 ? errno : EIO, std::generic_category());
}

/// The little-endian floats of a file; part of a sample at its end is dropped.
std::vector<float> readSamples(const QString& path)
{
    QFile file(path);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw unreadable();
    std::vector<float> samples(std::size_t(file.size()) / sizeof(float));
    if (samples.empty())
        throw DecoderError(DecoderError::Case::EmptyAudio);
    const qint64 byteCount = qint64(samples.size() * sizeof(float));
    if (file.read(reinterpret_cast<char*>(samples.data()), byteCount) != byteCount)
        throw unreadable();
    qFromLittleEndian<float>(samples.data(), qsizetype(samples.size()), samples.data());
    return samples;
}

} // namespace

std::vector<float> monoSamples(const QUrl& from, int sampleRate, std::optional<double> maximumDuration, bool lowImpact,
                               const QUrl& decoderExecutable, async::Duration timeout, std::stop_token stop,
                               const WorkerClock& clock)
{
    if (stop.stop_requested())
        throw async::Cancelled();
    const OwnedTemporaryFile output(QDir::tempPath(), TemporarySweep::decoderOutput());
    const ChildProcess::Launch launch{.executable = decoderExecutable.toLocalFile(),
                                      .arguments = argumentsFor(from, sampleRate, maximumDuration, output.path()),
                                      .niceness = lowImpact ? kLowImpactNiceness : kUsualNiceness};
    DecoderProcessController decoder(std::make_unique<ChildProcess>(launch), clock);
    waitForEnd(decoder, clock.now() + timeout, async::seconds(lowImpact ? 0.05 : 0.02), clock, stop);
    if (stop.stop_requested())
        throw async::Cancelled();
    if (decoder.exitStatus() != 0)
        throw DecoderError(DecoderError::Case::DecodingFailed);
    return readSamples(output.path());
}

} // namespace AudioPCMDecoder
