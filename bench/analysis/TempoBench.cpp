// What the estimate of a tempo takes: alone, in CPU time of its thread, for the 132 s that it looks at; and as a whole
// (decoder, temporary file, estimate) against ffmpeg alone with the same arguments, by pairs that run one after the
// other. Everything runs at the nice value of the decoder. usage: bench_tempo     (needs ffmpeg to make the file)

#include "Measure.h"
#include "analysis/decoding/AudioPCMDecoder.h"
#include "analysis/decoding/FFmpegExecutable.h"
#include "analysis/tempo/BPMAnalyzer.h"
#include "async/ThreadNiceness.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

namespace {

constexpr int kRounds = 15;
/// That of a decoder somebody waits for.
constexpr int kNiceness = 5;

bool allMet = true;

void print(const char* what, double value, const char* unit, double bound)
{
    std::printf("%-34s %8.2f %s (bound %g)%s\n", what, value, unit, bound, value <= bound ? "" : " MISSED");
    allMet = allMet && value <= bound;
}

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(u' ');
}

void runFFmpeg(const QStringList& arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(FFmpegExecutable::url().value_or(QUrl()).toLocalFile(), arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("ffmpeg failed");
}

/// Noise with two beats a second, so that nothing is easier to decode than music.
QString makeFile(const QString& path)
{
    runFFmpeg(words("-nostdin -y -v error -f lavfi -i "
                    "anoisesrc=color=pink:amplitude=0.5:duration=240:sample_rate=44100,tremolo=f=2:d=0.8,"
                    "aformat=channel_layouts=stereo -b:a 320k") +
              QStringList{path});
    return path;
}

void decodeBarely(const QString& path, const QString& output)
{
    runFFmpeg(words("-nostdin -y -v error -threads 1 -filter_threads 1 -fflags +discardcorrupt -err_detect ignore_err "
                    "-i") +
              QStringList{path} + words("-map 0:a:0 -vn -sn -dn -t 132 -ac 1 -ar 11025 -f f32le") +
              QStringList{output});
}

double threadMilliseconds()
{
    std::timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

void measureAlone(const QUrl& url)
{
    const std::vector<float> samples =
        AudioPCMDecoder::monoSamples(url, 11025, 132, false, *FFmpegExecutable::url(), async::seconds(60), {});
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        const double start = threadMilliseconds();
        BPMAnalyzer::estimateDetailed(samples, 70, 200, false, {});
        times.push_back(threadMilliseconds() - start);
    }
    print("estimate alone, 132 s", Measure::median(times), "ms of CPU time", 90);
}

void measureWhole(const QUrl& url, const QString& output)
{
    std::vector<double> bare;
    std::vector<double> whole;
    for (int round = 0; round < kRounds; ++round) {
        bare.push_back(Measure::secondsOf([&] { decodeBarely(url.toLocalFile(), output); }));
        const auto job = [&] { BPMAnalyzer::estimateDetailed(url, 70, 200, false, std::nullopt, {}); };
        whole.push_back(Measure::secondsOf(job) / bare.back());
    }
    std::printf("MP3, 240 s: ffmpeg alone %.3f s\n", Measure::median(bare));
    print("  whole job", Measure::median(whole), "of that", 1.4);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    async::setThreadNiceness(kNiceness);
    const QTemporaryDir folder;
    const QUrl url = QUrl::fromLocalFile(makeFile(folder.filePath(QStringLiteral("a.mp3"))));
    measureAlone(url);
    measureWhole(url, folder.filePath(QStringLiteral("bare.pcm")));
    return allMet ? 0 : 1;
}
