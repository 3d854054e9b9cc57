#include "Commands.h"
#include "Output.h"
#include "RawSamples.h"

#include "analysis/decoding/AudioPCMDecoder.h"
#include "analysis/tempo/BPMAnalyzer.h"
#include "platform/FileURL.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <system_error>

namespace {

using BPMAnalyzer::Estimate;

// The range that the program itself asks for.
constexpr double kMinimum = 70;
constexpr double kMaximum = 200;

struct Options {
    bool isLowImpact = false;
    bool isRaw = false;
};

Estimate estimate(const QString& path, const Options& options)
{
    if (options.isRaw)
        return BPMAnalyzer::estimateDetailed(rawSamples(path), kMinimum, kMaximum, options.isLowImpact, {});
    const QUrl url = FileURL::fromPath(QDir::current().absoluteFilePath(path));
    return BPMAnalyzer::estimateDetailed(url, kMinimum, kMaximum, options.isLowImpact, std::nullopt, {});
}

void print(const QString& path, const Estimate& estimate)
{
    QJsonArray alternatives;
    for (const Estimate::Alternative& alternative : estimate.alternatives) {
        alternatives.append(QJsonObject{{QStringLiteral("bpm"), alternative.bpm},
                                        {QStringLiteral("relativeStrength"), alternative.relativeStrength}});
    }
    Output::line({{QStringLiteral("path"), path},
                  {QStringLiteral("bpm"), estimate.bpm},
                  {QStringLiteral("confidence"), estimate.confidence},
                  {QStringLiteral("alternatives"), alternatives}});
}

ExitStatus tempoOf(const QString& path, const Options& options)
{
    try {
        print(path, estimate(path, options));
        return ExitStatus::Success;
    } catch (const BPMAnalyzer::Error& error) {
        QJsonObject object = Output::described(error);
        object.insert(QStringLiteral("domain"), QString(BPMAnalyzer::Error::domain()));
        object.insert(QStringLiteral("code"), error.code());
        return Output::failure(path, object);
    } catch (const AudioPCMDecoder::DecoderError& error) {
        return Output::failure(path, Output::described(error));
    } catch (const std::system_error& error) {
        return Output::failure(path, Output::described(error));
    }
}

} // namespace

ExitStatus Commands::tempo(const QStringList& arguments)
{
    QStringList paths = arguments;
    const Options options{.isLowImpact = paths.removeAll(QStringLiteral("--low-impact")) > 0,
                          .isRaw = paths.removeAll(QStringLiteral("--raw")) > 0};
    if (paths.isEmpty() || Output::holdsOption(paths))
        return ExitStatus::Usage;
    ExitStatus status = ExitStatus::Success;
    for (const QString& path : paths) {
        if (tempoOf(path, options) != ExitStatus::Success)
            status = ExitStatus::ItemFailed;
    }
    return status;
}
