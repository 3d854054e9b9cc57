// How long an envelope takes, by ffmpeg and by the program's own reader, against ffmpeg alone with the same arguments;
// how long an entry on disk takes; and how much memory an hour of sound takes, in a process that does nothing else.
// Everything runs at the nice value of the decoder. usage: bench_waveform     (needs ffmpeg to make the files)

#include "Bounds.h"
#include "FFmpegRuns.h"
#include "Measure.h"
#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/EnvelopeFolder.h"
#include "WaveformScrubber/cache/EnvelopeKey.h"
#include "WaveformScrubber/decoding/AudioProcessor.h"
#include "async/ThreadNiceness.h"
#include "platform/process/FFmpegExecutable.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int kRounds = 9;
/// That of a decoder somebody waits for.
constexpr int kNiceness = 5;

Bounds bounds;

QString ffmpeg()
{
    return FFmpegExecutable::url().value_or(QUrl()).toLocalFile();
}

QString makeFile(const QString& path, int seconds, const QStringList& options)
{
    return FFmpegRuns::makeFile(ffmpeg(), path, seconds, options);
}

std::vector<float> envelopeOf(const QString& path, bool isDirect)
{
    const QUrl url = QUrl::fromLocalFile(path);
    return isDirect ? AudioProcessor::extractEnvelopeDirectly(url, kEnvelopeSampleCount, LowImpact::No, {})
                    : AudioProcessor::extractEnvelope(url, kEnvelopeSampleCount, LowImpact::No, {});
}

/// Ratios of pairs that run one after the other, because other work on the machine changes from moment to moment.
void measureSpeed(const QTemporaryDir& folder, const char* name, const QStringList& options, double directBound)
{
    const QString path = makeFile(folder.filePath(QLatin1StringView(name)), 240, options);
    const QString output = folder.filePath(QStringLiteral("bare.pcm"));
    std::vector<double> bare;
    std::vector<double> byProgram;
    std::vector<double> direct;
    for (int round = 0; round < kRounds; ++round) {
        bare.push_back(Measure::secondsOf([&] { FFmpegRuns::decodeBarely(ffmpeg(), path, 0, 8000, output); }));
        byProgram.push_back(Measure::secondsOf([&] { envelopeOf(path, false); }) / bare.back());
        direct.push_back(Measure::secondsOf([&] { envelopeOf(path, true); }) / bare.back());
    }
    std::printf("%s, 240 s: ffmpeg alone %.3f s\n", name, Measure::median(bare));
    bounds.print("  through ffmpeg", Measure::median(byProgram), "of that", 1.08);
    bounds.print("  directly", Measure::median(direct), "of that", directBound);
}

void measureDiskHit(const QTemporaryDir& folder)
{
    const QUrl url = QUrl::fromLocalFile(folder.filePath(QStringLiteral("a.mp3")));
    const auto entry = [&] {
        return EnvelopeFolder::entryPath(folder.path(), envelopeKey(url, FileStamp::of(url).value()));
    };
    if (!EnvelopeFile::write(entry(), std::vector<float>(kEnvelopeSampleCount, 0.5F)))
        qFatal("cannot write the entry");
    std::vector<double> times;
    for (int round = 0; round < 1000; ++round) {
        times.push_back(Measure::secondsOf([&] {
            if (!EnvelopeFile::read(entry()))
                qFatal("the entry is gone");
        }));
    }
    std::ranges::sort(times);
    bounds.print("disk hit, 99 of 100 within", times[times.size() * 99 / 100] * 1000, "ms", 2);
}

/// Of this program alone: what getrusage() tells is not less than what its parent had.
double peakMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        qFatal("no /proc");
    const QByteArray text = status.readAll();
    const qsizetype at = text.indexOf("VmHWM:") + 6;
    return text.sliced(at, text.indexOf("kB", at) - at).trimmed().toDouble() / 1024;
}

/// In a process of its own, whose decoder's memory is not counted.
void measureMemory(const QString& path, const char* what, const char* way, double bound)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--peak"), QLatin1StringView(way), path});
    process.waitForFinished(-1);
    bounds.print(what, process.readAllStandardOutput().trimmed().toDouble(), "MB", bound);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1StringView("--peak")) {
        if (envelopeOf(arguments.value(3), arguments.value(2) == QLatin1StringView("directly")).empty())
            return 1;
        std::printf("%.1f\n", peakMegabytes());
        return 0;
    }
    async::setThreadNiceness(kNiceness);
    const QTemporaryDir folder;
    measureSpeed(folder, "a.mp3", FFmpegRuns::words("-b:a 320k"), 0.80);
    measureSpeed(folder, "a.flac", {}, 0.70);
    measureDiskHit(folder);
    const QString hours[] = {
        makeFile(folder.filePath(QStringLiteral("hour.mp3")), 3600, FFmpegRuns::words("-b:a 320k")),
        makeFile(folder.filePath(QStringLiteral("hour.flac")), 3600, {})};
    measureMemory(hours[0], "an hour of MP3 through ffmpeg", "through", 150);
    measureMemory(hours[0], "an hour of MP3 directly", "directly", 40);
    measureMemory(hours[1], "an hour of FLAC directly", "directly", 40);
    return bounds.exitStatus();
}
