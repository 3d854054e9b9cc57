// How much processor time the key of three minutes of samples takes, and how long the key of a file takes against
// ffmpeg alone with the same arguments. Everything runs at the nice value of the decoder. usage: bench_key     (needs
// ffmpeg)

#include "Bounds.h"
#include "FFmpegRuns.h"
#include "Measure.h"
#include "analysis/key/MusicalKeyAnalyzer.h"
#include "async/ThreadNiceness.h"
#include "platform/process/FFmpegExecutable.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>

namespace {

constexpr int kRounds = 9;
constexpr int kNiceness = 5;
constexpr int kSampleRate = 22050;
constexpr int kSeconds = 180; // that the key of a file is heard in

Bounds bounds;

double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

/// Chords that change twice a second with noise beneath: hundreds of peaks in every frame, more than most music has.
std::vector<float> music(int seconds)
{
    std::vector<float> samples(std::size_t(seconds) * kSampleRate);
    std::minstd_rand random(5);
    std::uniform_real_distribution<float> noise(-0.05F, 0.05F);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = double(i) / kSampleRate;
        const double root = 55 * std::exp2(double(i * 2 / kSampleRate * 7 % 12) / 12);
        double value = noise(random);
        for (const double partial : {1.0, 2.0, 2.5, 3.0, 4.0, 6.0, 7.5})
            value += 0.1 * std::sin(2 * M_PI * root * partial * time);
        samples[i] = float(value);
    }
    return samples;
}

void measureEstimate(const char* what, const std::vector<float>& samples)
{
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        const double start = processorSeconds();
        MusicalKeyAnalyzer::estimate(MusicalKeyAnalyzer::features(samples, kSampleRate, false, {}));
        times.push_back(processorSeconds() - start);
    }
    bounds.print(what, Measure::median(times) * 1000, "ms", 70);
}

/// Ratios of pairs that run one after the other, because other work on the machine changes from moment to moment.
void measureFile(const QTemporaryDir& folder)
{
    const QString ffmpeg = FFmpegExecutable::url().value_or(QUrl()).toLocalFile();
    const QString path =
        FFmpegRuns::makeFile(ffmpeg, folder.filePath(QStringLiteral("a.mp3")), 240, FFmpegRuns::words("-b:a 320k"));
    const QString output = folder.filePath(QStringLiteral("bare.raw"));
    const QUrl url = QUrl::fromLocalFile(path);
    std::vector<double> ratios;
    std::vector<double> decodings;
    for (int round = 0; round < kRounds; ++round) {
        decodings.push_back(
            Measure::secondsOf([&] { FFmpegRuns::decodeBarely(ffmpeg, path, kSeconds, kSampleRate, output); }));
        const double whole =
            Measure::secondsOf([&] { MusicalKeyAnalyzer::estimate(MusicalKeyAnalyzer::features(url, false, {})); });
        ratios.push_back(whole / decodings.back());
    }
    std::printf("%-44s %8.2f s\n", "four minutes of MP3, ffmpeg alone", Measure::median(decodings));
    bounds.print("the key of the same against it", Measure::median(ratios), "times", 1.25);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    async::setThreadNiceness(kNiceness);
    measureEstimate("180 s of samples, chords and noise", music(180));
    const QTemporaryDir folder;
    measureFile(folder);
    return bounds.exitStatus();
}
