#include "WaveformScrubber/decoding/MonoSamples.h"

#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "WaveformScrubber/decoding/WaveformProcessController.h"
#include "async/Cancelled.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Nice values of the executor's threads for work of the same two kinds.
constexpr int kLowImpactNiceness = 10;
constexpr int kUsualNiceness = 5;

QStringList argumentsFor(const MonoDecoding& decoding, const QString& output)
{
    // One thread, which keeps the machine free while it plays; damaged parts are skipped.
    return {QStringLiteral("-nostdin"),
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
            decoding.from.toLocalFile(),
            QStringLiteral("-map"),
            QStringLiteral("0:a:0"),
            QStringLiteral("-vn"),
            QStringLiteral("-sn"),
            QStringLiteral("-dn"),
            QStringLiteral("-ac"),
            QStringLiteral("1"),
            QStringLiteral("-ar"),
            QString::number(decoding.sampleRate),
            QStringLiteral("-f"),
            QStringLiteral("f32le"),
            output};
}

/// Waits for the decoder's end. Throws Cancelled and TimedOut, then without the decoder.
void waitForEnd(WaveformProcessController& decoder, LowImpact lowImpact, const std::stop_token& stop,
                const WaitClock& clock)
{
    const async::Duration interval = async::seconds(lowImpact == LowImpact::Yes ? 0.05 : 0.02);
    const async::Duration deadline = clock.now() + async::seconds(lowImpact == LowImpact::Yes ? 180 : 90);
    while (decoder.isRunning()) {
        if (stop.stop_requested()) {
            decoder.stop();
            throw async::Cancelled();
        }
        if (clock.now() >= deadline) {
            decoder.stop();
            throw AudioProcessingError(AudioProcessingError::Case::TimedOut);
        }
        decoder.wait(interval);
    }
}

} // namespace

MonoSamples::MonoSamples(const QString& path)
    : m_file(Descriptor::checked(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC)))
{
    struct stat status = {};
    if (::fstat(m_file.get(), &status) != 0)
        throw std::system_error(errno, std::generic_category());
    m_count = qint64(status.st_size) / qint64(sizeof(float));
    if (m_count == 0)
        throw AudioProcessingError(AudioProcessingError::Case::ChannelDataMissing);
}

std::size_t MonoSamples::read(std::span<float> into)
{
    const auto wanted = std::size_t(std::min<qint64>(qint64(into.size()), m_count - m_position)) * sizeof(float);
    auto* const bytes = reinterpret_cast<char*>(into.data());
    std::size_t done = 0;
    while (done < wanted) {
        const ssize_t got = ::read(m_file.get(), bytes + done, wanted - done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) // the file ends before its length: nobody but the decoder writes to it, so the disk is at fault
            throw std::system_error(got < 0 ? errno : EIO, std::generic_category());
        done += std::size_t(got);
    }
    const std::size_t count = done / sizeof(float);
    qFromLittleEndian<float>(into.data(), qsizetype(count), into.data());
    m_position += qint64(count);
    return count;
}

const OwnedTemporaryFile::Naming& waveformOutputNaming()
{
    static const OwnedTemporaryFile::Naming kNaming{QStringLiteral("velmora-waveform-"), QStringLiteral(".pcm")};
    return kNaming;
}

MonoSamples decodeMonoSamples(const MonoDecoding& decoding, const std::stop_token& stop, const WaitClock& clock)
{
    if (stop.stop_requested())
        throw async::Cancelled();
    const OwnedTemporaryFile output(QDir::tempPath(), waveformOutputNaming());
    const ChildProcess::Launch launch{.executable = decoding.executable,
                                      .arguments = argumentsFor(decoding, output.path()),
                                      .niceness =
                                          decoding.lowImpact == LowImpact::Yes ? kLowImpactNiceness : kUsualNiceness};
    WaveformProcessController decoder(launch, clock);
    waitForEnd(decoder, decoding.lowImpact, stop, clock);
    if (stop.stop_requested())
        throw async::Cancelled();
    if (decoder.exitStatus() != 0)
        throw AudioProcessingError(AudioProcessingError::Case::DecodingFailed);
    return MonoSamples(output.path());
}
