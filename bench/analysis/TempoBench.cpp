// What the estimate of a tempo takes: alone, in CPU time of its thread, for the 132 s that it looks at; and as a whole
// (decoder, temporary file, estimate) against ffmpeg alone with the same arguments, by pairs that run one after the
// other. Everything runs at the nice value of the decoder. usage: bench_tempo     (needs ffmpeg to make the file)

#include "Bounds.h"
#include "FFmpegRuns.h"
#include "Measure.h"
#include "analysis/decoding/AudioPCMDecoder.h"
#include "analysis/tempo/BPMAnalyzer.h"
#include "async/ThreadNiceness.h"
#include "platform/process/FFmpegExecutable.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

namespace {

constexpr int kRounds = 15;
/// That of a decoder somebody waits for.
constexpr int kNiceness = 5;

Bounds bounds;

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
    bounds.print("estimate alone, 132 s", Measure::median(times), "ms of CPU time", 90);
}

void measureWhole(const QUrl& url, const QString& ffmpeg, const QString& output)
{
    std::vector<double> bare;
    std::vector<double> whole;
    for (int round = 0; round < kRounds; ++round) {
        bare.push_back(
            Measure::secondsOf([&] { FFmpegRuns::decodeBarely(ffmpeg, url.toLocalFile(), 132, 11025, output); }));
        const auto job = [&] { BPMAnalyzer::estimateDetailed(url, 70, 200, false, std::nullopt, {}); };
        whole.push_back(Measure::secondsOf(job) / bare.back());
    }
    std::printf("MP3, 240 s: ffmpeg alone %.3f s\n", Measure::median(bare));
    bounds.print("  whole job", Measure::median(whole), "of that", 1.4);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    async::setThreadNiceness(kNiceness);
    const QTemporaryDir folder;
    const QString ffmpeg = FFmpegExecutable::url().value_or(QUrl()).toLocalFile();
    const QUrl url = QUrl::fromLocalFile(
        FFmpegRuns::makeFile(ffmpeg, folder.filePath(QStringLiteral("a.mp3")), 240, FFmpegRuns::words("-b:a 320k")));
    measureAlone(url);
    measureWhole(url, ffmpeg, folder.filePath(QStringLiteral("bare.pcm")));
    return bounds.exitStatus();
}
