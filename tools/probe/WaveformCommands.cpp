#include "Commands.h"
#include "Output.h"

#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "WaveformScrubber/decoding/AudioProcessor.h"
#include "WaveformScrubber/shape/Downsampler.h"
#include "platform/FileURL.h"
#include "platform/audio/AudioFileError.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

QJsonArray numbers(const std::vector<float>& values)
{
    QJsonArray array;
    for (const float value : values)
        array.append(double(value));
    return array;
}

QString caseName(AudioFileError::Case what)
{
    switch (what) {
    case AudioFileError::Case::CannotOpen:
        return QStringLiteral("cannotOpen");
    case AudioFileError::Case::NoAudio:
        return QStringLiteral("noAudio");
    case AudioFileError::Case::OutOfMemory:
        return QStringLiteral("outOfMemory");
    }
    return {};
}

ExitStatus fail(const QString& path, const QString& caseName, const std::exception& error)
{
    const QJsonObject object{{QStringLiteral("case"), caseName},
                             {QStringLiteral("message"), QString::fromLatin1(error.what())}};
    return Output::failure(path, object);
}

ExitStatus waveformOf(const QString& path, bool isDirect)
{
    const QUrl url = FileURL::fromPath(QDir::current().absoluteFilePath(path));
    try {
        const std::vector<float> samples =
            isDirect ? AudioProcessor::extractEnvelopeDirectly(url, kEnvelopeSampleCount, LowImpact::No, {})
                     : AudioProcessor::extractEnvelope(url, kEnvelopeSampleCount, LowImpact::No, {});
        Output::line({{QStringLiteral("path"), path}, {QStringLiteral("samples"), numbers(samples)}});
        return ExitStatus::Success;
    } catch (const AudioProcessingError& error) {
        return fail(path, error.caseName(), error);
    } catch (const AudioFileError& error) {
        return fail(path, caseName(error.which()), error);
    }
}

/// One line of input resampled; nothing when it makes no sense.
std::optional<QJsonArray> resampled(const QByteArray& line)
{
    const QJsonObject request = QJsonDocument::fromJson(line).object();
    const QByteArray name = request.value(QLatin1StringView("strategy")).toString().toLatin1();
    const auto strategy = upsampleStrategyFromRawValue(QLatin1StringView(name));
    const QJsonValue samples = request.value(QLatin1StringView("samples"));
    const QJsonValue count = request.value(QLatin1StringView("count"));
    if (!strategy || !samples.isArray() || !count.isDouble() || count.toInt(-1) < 0)
        return std::nullopt;
    std::vector<float> values;
    for (const QJsonValue& value : samples.toArray())
        values.push_back(float(value.toDouble()));
    return numbers(Downsampler::prepareSamples(values, count.toInt(), *strategy));
}

} // namespace

ExitStatus Commands::waveform(const QStringList& arguments)
{
    QStringList paths = arguments;
    const bool isDirect = paths.removeAll(QStringLiteral("--direct")) > 0;
    if (paths.isEmpty())
        return ExitStatus::Usage;
    ExitStatus status = ExitStatus::Success;
    for (const QString& path : paths) {
        if (waveformOf(path, isDirect) != ExitStatus::Success)
            status = ExitStatus::ItemFailed;
    }
    return status;
}

ExitStatus Commands::resample(const QStringList& arguments)
{
    QFile input;
    if (!arguments.isEmpty() || !input.open(stdin, QIODevice::ReadOnly))
        return ExitStatus::Usage;
    ExitStatus status = ExitStatus::Success;
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        if (line.trimmed().isEmpty())
            continue;
        if (const std::optional<QJsonArray> samples = resampled(line)) {
            Output::line({{QStringLiteral("samples"), *samples}});
            continue;
        }
        const QJsonObject error{{QStringLiteral("case"), QStringLiteral("unusableLine")},
                                {QStringLiteral("message"), QString::fromUtf8(line.trimmed())}};
        Output::line({{QStringLiteral("error"), error}});
        status = ExitStatus::ItemFailed;
    }
    return status;
}
