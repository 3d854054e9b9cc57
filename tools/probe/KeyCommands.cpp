#include "Commands.h"
#include "Output.h"
#include "RawSamples.h"

#include "analysis/decoding/DecoderError.h"
#include "analysis/key/MusicalKeyAnalyzer.h"
#include "platform/FileURL.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <system_error>

namespace {

/// Of raw samples.
constexpr int kRawSampleRate = 22050;

MusicalKeyAnalysis analyze(const QString& path, bool isRaw)
{
    using namespace MusicalKeyAnalyzer;
    if (isRaw)
        return estimate(features(rawSamples(path), kRawSampleRate, false, {}));
    return estimate(features(FileURL::fromPath(QDir::current().absoluteFilePath(path)), false, {}));
}

QJsonObject describe(const MusicalKeyAnalysis& analysis)
{
    QJsonArray alternatives;
    for (const MusicalKeyAnalysis::Alternative& alternative : analysis.alternatives)
        alternatives.append(QJsonObject{{QStringLiteral("camelot"), alternative.key.camelot()},
                                        {QStringLiteral("relativeStrength"), alternative.relativeStrength}});
    const bool isMinor = analysis.key.mode == MusicalKeyMode::Minor;
    return {{QStringLiteral("camelot"), analysis.key.camelot()},
            {QStringLiteral("pitchClass"), analysis.key.pitchClass},
            {QStringLiteral("mode"), isMinor ? QStringLiteral("minor") : QStringLiteral("major")},
            {QStringLiteral("confidence"), analysis.confidence},
            {QStringLiteral("tuningCents"), analysis.tuningCents},
            {QStringLiteral("alternatives"), alternatives}};
}

/// The analysis of a file, or an object with nothing but the error.
QJsonObject answerFor(const QString& path, bool isRaw)
{
    QJsonObject error;
    try {
        return describe(analyze(path, isRaw));
    } catch (const MusicalKeyAnalyzer::Error& failure) {
        error = Output::described(failure);
        error.insert(QStringLiteral("domain"), QString(MusicalKeyAnalyzer::Error::domain()));
        error.insert(QStringLiteral("code"), failure.code());
    } catch (const AudioPCMDecoder::DecoderError& failure) {
        error = Output::described(failure);
    } catch (const std::system_error& failure) {
        error = Output::described(failure);
    }
    return {{QStringLiteral("error"), error}};
}

/// What the parser that the request names makes of its text; nothing for something else than a request.
std::optional<QJsonValue> parsed(const QJsonObject& request)
{
    constexpr struct {
        QLatin1StringView name;
        std::optional<QString> (*parse)(const QString&);
    } kParsers[] = {{QLatin1StringView("metadata"), &MusicalKey::camelotCode},
                    {QLatin1StringView("fileName"), &MusicalKey::embeddedCamelotCode},
                    {QLatin1StringView("code"), &MusicalKey::normalizedCamelotCode}};
    for (const auto& parser : kParsers) {
        const QJsonValue text = request.value(parser.name);
        if (!text.isString())
            continue;
        const std::optional<QString> code = parser.parse(text.toString());
        return code ? QJsonValue(*code) : QJsonValue(QJsonValue::Null);
    }
    return std::nullopt;
}

} // namespace

ExitStatus Commands::key(const QStringList& arguments)
{
    QStringList paths = arguments;
    const bool isRaw = paths.removeAll(QStringLiteral("--raw")) > 0;
    if (paths.isEmpty() || Output::holdsOption(paths))
        return ExitStatus::Usage;
    ExitStatus status = ExitStatus::Success;
    for (const QString& path : paths) {
        QJsonObject answer = answerFor(path, isRaw);
        if (answer.contains(QLatin1StringView("error")))
            status = ExitStatus::ItemFailed;
        answer.insert(QStringLiteral("path"), path);
        Output::line(answer);
    }
    return status;
}

ExitStatus Commands::camelot(const QStringList& arguments)
{
    QFile input;
    if (!arguments.isEmpty() || !input.open(stdin, QIODevice::ReadOnly))
        return ExitStatus::Usage;
    ExitStatus status = ExitStatus::Success;
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        const std::optional<QJsonValue> value = parsed(QJsonDocument::fromJson(line).object());
        if (value)
            Output::line({{QStringLiteral("value"), *value}});
        else
            status = Output::noRequest();
    }
    return status;
}
