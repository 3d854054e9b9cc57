#include "platform/process/MonoSamples.h"

#include "async/Cancelled.h"
#include "platform/process/DecoderProcessController.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

#include <cerrno>
#include <cmath>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Nice values of the executor's threads for work of the same two kinds. 10 leaves a decoder about a tenth of a
// processor that other programs want; 19 would starve it into its time-out on a busy computer.
constexpr int kLowImpactNiceness = 10;
constexpr int kUsualNiceness = 5;
constexpr async::Duration kLowImpactInterval = async::seconds(0.05);
constexpr async::Duration kUsualInterval = async::seconds(0.02);

QStringList argumentsFor(const MonoDecoding& decoding, const QString& output)
{
    // One thread, so that work in the background never takes several processors; damaged parts are skipped.
    const QString fixed = QStringLiteral("-nostdin -y -v error -threads 1 -filter_threads 1 -fflags +discardcorrupt "
                                         "-err_detect ignore_err -i");
    const std::optional<double>& limit = decoding.maximumDuration;
    QStringList arguments = fixed.split(u' ');
    arguments << decoding.from.toLocalFile() << QStringLiteral("-map") << QStringLiteral("0:a:0")
              << QStringLiteral("-vn") << QStringLiteral("-sn") << QStringLiteral("-dn");
    if (limit && std::isfinite(*limit) && *limit > 0)
        arguments << QStringLiteral("-t") << QString::number(std::ceil(*limit), 'f', 0);
    arguments << QStringLiteral("-ac") << QStringLiteral("1") << QStringLiteral("-ar")
              << QString::number(decoding.sampleRate) << QStringLiteral("-f") << QStringLiteral("f32le") << output;
    return arguments;
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
        throw MonoDecodingError(MonoDecodingError::Case::NoSamples);
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
        if (got <= 0) // the file ends before its length: only the decoder writes to it, so the disk is at fault
            throw std::system_error(got < 0 ? errno : EIO, std::generic_category());
        done += std::size_t(got);
    }
    const std::size_t count = done / sizeof(float);
    qFromLittleEndian<float>(into.data(), qsizetype(count), into.data());
    m_position += qint64(count);
    return count;
}

MonoSamples decodeMonoSamples(const MonoDecoding& decoding, const std::stop_token& stop, const WorkerClock& clock)
{
    using End = DecoderProcessController::End;
    if (stop.stop_requested())
        throw async::Cancelled();
    const OwnedTemporaryFile output(QDir::tempPath(), decoding.output);
    const ChildProcess::Launch launch{.executable = decoding.executable.toLocalFile(),
                                      .arguments = argumentsFor(decoding, output.path()),
                                      .niceness = decoding.isLowImpact ? kLowImpactNiceness : kUsualNiceness};
    DecoderProcessController decoder(launch, clock);
    const End end = decoder.waitForEnd(
        {.timeout = decoding.timeout, .interval = decoding.isLowImpact ? kLowImpactInterval : kUsualInterval}, stop);
    if (end == End::Stopped)
        throw async::Cancelled();
    if (end == End::TimedOut)
        throw MonoDecodingError(MonoDecodingError::Case::TimedOut);
    if (decoder.exitStatus() != 0)
        throw MonoDecodingError(MonoDecodingError::Case::DecodingFailed);
    return MonoSamples(output.path());
}
