#include "Commands.h"
#include "Output.h"

#include "analysis/decoding/AudioPCMDecoder.h"
#include "platform/FileURL.h"
#include "platform/process/FFmpegExecutable.h"

#include <QDir>
#include <QJsonObject>
#include <QSaveFile>
#include <QtEndian>

#include <system_error>

namespace {

using AudioPCMDecoder::DecoderError;

/// As long as the analyses wait.
constexpr async::Duration kTimeout = async::seconds(30);

struct Request {
    QString path;
    QString output;
    int sampleRate = 0;
    std::optional<double> maximumDuration;
};

std::optional<Request> parse(QStringList arguments)
{
    Request request;
    bool isUsable = true;
    const auto takeOption = [&](const QString& name) {
        const qsizetype index = arguments.indexOf(name);
        const QString value = index < 0 ? QString() : arguments.value(index + 1);
        isUsable = isUsable && (index < 0 || !value.isEmpty());
        if (index >= 0)
            arguments.remove(index, qMin<qsizetype>(2, arguments.size() - index));
        return value;
    };
    request.sampleRate = takeOption(QStringLiteral("--rate")).toInt();
    request.output = takeOption(QStringLiteral("--out"));
    const QString maximum = takeOption(QStringLiteral("--max"));
    if (!maximum.isEmpty()) {
        bool isNumber = false;
        request.maximumDuration = maximum.toDouble(&isNumber);
        isUsable = isUsable && isNumber;
    }
    if (!isUsable || request.sampleRate <= 0 || request.output.isEmpty() || arguments.size() != 1)
        return std::nullopt;
    request.path = arguments.first();
    return request;
}

std::vector<float> decode(const Request& request)
{
    const std::optional<QUrl> decoder = FFmpegExecutable::url();
    if (!decoder)
        throw DecoderError(DecoderError::Case::FFmpegUnavailable);
    const QUrl url = FileURL::fromPath(QDir::current().absoluteFilePath(request.path));
    return AudioPCMDecoder::monoSamples(url, request.sampleRate, request.maximumDuration, false, *decoder, kTimeout,
                                        {});
}

bool writeSamples(const std::vector<float>& samples, const QString& path)
{
    std::vector<float> bytes(samples.size());
    qToLittleEndian<float>(samples.data(), qsizetype(samples.size()), bytes.data());
    QSaveFile file(path);
    const qint64 size = qint64(bytes.size() * sizeof(float));
    return file.open(QIODevice::WriteOnly) && file.write(reinterpret_cast<const char*>(bytes.data()), size) == size &&
           file.commit();
}

} // namespace

ExitStatus Commands::pcm(const QStringList& arguments)
{
    const std::optional<Request> request = parse(arguments);
    if (!request)
        return ExitStatus::Usage;
    try {
        const std::vector<float> samples = decode(*request);
        if (!writeSamples(samples, request->output)) {
            Output::diagnose(QStringLiteral("cannot write ") + request->output);
            return ExitStatus::Usage;
        }
        Output::line({{QStringLiteral("path"), request->path},
                      {QStringLiteral("samples"), static_cast<qint64>(samples.size())}});
        return ExitStatus::Success;
    } catch (const DecoderError& error) {
        return Output::failure(request->path, Output::described(error));
    } catch (const std::system_error& error) {
        return Output::failure(request->path, Output::described(error));
    }
}
