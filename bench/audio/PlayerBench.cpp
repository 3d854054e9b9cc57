// What playing costs, and how soon it is heard.
//
// usage: bench_player [file]     an MP3 of 15 MB is made where none is given

#include "Measure.h"
#include "platform/audio/AudioFilePlayer.h"
#include "platform/audio/AudioFileReader.h"
#include "platform/audio/FileImage.h"
#include "support/SoundServer.h"
#include "support/TestTones.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <sys/resource.h>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int kRate = 44100;
constexpr int kRounds = 15;
constexpr double kPlayedSeconds = 20;

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double secondsUntil(Clock::time_point since, const std::function<bool()>& isDone)
{
    while (!isDone())
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    return Seconds(Clock::now() - since).count();
}

/// From the wish to the moment when the first sample leaves the device's buffer.
double openToSound(AudioSystem& system, const QString& path)
{
    const auto since = Clock::now();
    const auto player = system.open(path, {});
    player->play();
    return secondsUntil(since, [&] { return player->currentTime() > 0; }) + player->outputLatency();
}

double seekToSound(AudioFilePlayer& player, double target)
{
    const auto since = Clock::now();
    player.setVolume(0, 0.012);
    std::this_thread::sleep_for(std::chrono::milliseconds(14));
    player.setCurrentTime(target);
    player.setVolume(1, 0.018);
    const double handedOver = secondsUntil(since, [&] { return player.currentTime() > target; });
    return handedOver + player.outputLatency();
}

/// CPU time that decoding the same stretch takes by itself.
double decodingCpu(const QString& path, double seconds)
{
    const auto image = FileImage::open(path);
    image->fill({});
    const double before = cpuSeconds();
    const auto reader = AudioFileReader::open(image, {0, 2});
    std::vector<float> block(4096 * 2);
    for (qint64 left = qint64(seconds * reader->sampleRate()); left > 0;) {
        const qint64 read = reader->read(block);
        if (read == 0)
            break;
        left -= read;
    }
    return cpuSeconds() - before;
}

void print(const char* what, double value, const char* unit, double bound)
{
    std::printf("%-52s %8.2f %s   bound %.0f: %s\n", what, value, unit, bound, value <= bound ? "met" : "MISSED");
}

void measure(const QString& path)
{
    const auto system = makeAudioSystem({});
    std::vector<double> first;
    std::vector<double> next;
    std::vector<double> seeks;
    first.push_back(openToSound(*system, path));
    for (int round = 0; round < kRounds; ++round)
        next.push_back(openToSound(*system, path));
    const auto player = system->open(path, {});
    player->play();
    std::this_thread::sleep_for(Seconds(1));
    for (int round = 0; round < kRounds; ++round) {
        seeks.push_back(seekToSound(*player, player->duration() * ((round * 7) % kRounds) / kRounds));
        std::this_thread::sleep_for(Seconds(0.15));
    }
    player->setCurrentTime(0);
    std::this_thread::sleep_for(Seconds(1));
    const double before = cpuSeconds();
    std::this_thread::sleep_for(Seconds(kPlayedSeconds));
    const double playing = cpuSeconds() - before;
    player->stop();
    const double decoding = decodingCpu(path, kPlayedSeconds);
    print("open to sound, the device still closed", first.front() * 1e3, "ms", 120);
    print("open to sound, median", Measure::median(next) * 1e3, "ms", 120);
    print("open to sound, worst", *std::ranges::max_element(next) * 1e3, "ms", 120);
    print("seek to sound, median", Measure::median(seeks) * 1e3, "ms", 60);
    print("seek to sound, worst", *std::ranges::max_element(seeks) * 1e3, "ms", 60);
    print("playing, beyond decoding, of one core", (playing - decoding) / kPlayedSeconds * 100, "% ", 3);
    std::printf("decoding itself %.2f %%; the device says %.1f ms of latency\n", decoding / kPlayedSeconds * 100,
                player->outputLatency() * 1e3);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (const QString reason = SoundServer::whyNot(); !reason.isEmpty()) {
        std::printf("Nothing to play to: %s\n", qPrintable(reason));
        return 0;
    }
    const QTemporaryDir folder;
    QString path = application.arguments().value(1);
    if (path.isEmpty()) {
        path = folder.filePath(QStringLiteral("tone.mp3"));
        TestTones::make(path, 375, kRate, QStringLiteral("-b:a 320k"));
    }
    std::printf("%s, %.1f MB\n", qPrintable(QFileInfo(path).fileName()), double(QFileInfo(path).size()) / 1e6);
    SoundServer server(kRate);
    server.startRecording(); // keeps the server's output from sleeping two seconds at a time, as a real one never does
    measure(path);
    return 0;
}
