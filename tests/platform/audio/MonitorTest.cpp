// The whole way of the sound: files are played through the system's sound server, and what arrives at its output is
// recorded and compared, sample by sample, with what a decoder makes of the file.

#include "platform/audio/AudioFilePlayer.h"
#include "support/Machine.h"
#include "support/Recordings.h"
#include "support/SoundFiles.h"
#include "support/SoundServer.h"
#include "support/TestTones.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

namespace {

constexpr int kRate = 44100;
constexpr double kSeekLimitSeconds = 0.1;

using Seconds = std::chrono::duration<double>;

class MonitorTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (const QString reason = SoundServer::whyNot(); !reason.isEmpty())
            GTEST_SKIP() << "the sound cannot be recorded: " << reason.toStdString();
        server = std::make_unique<SoundServer>(kRate);
        ASSERT_TRUE(server->isRunning());
        system = makeAudioSystem({});
        system->setEventHandler([this](AudioOutputEvent event) {
            if (event == AudioOutputEvent::Lost)
                isLost = true;
        });
    }

    /// Begins with silence: of a stream that has only just begun the server's own recording may lack a few samples.
    QString makeFile(const char* name, double seconds, const QString& arguments = {})
    {
        const QString path = folder.filePath(QString::fromUtf8(name));
        EXPECT_TRUE(TestTones::make(path, seconds, kRate, QStringLiteral("-af adelay=250:all=1 ") + arguments));
        return path;
    }

    QTemporaryDir folder;
    std::unique_ptr<SoundServer> server;
    std::atomic<bool> isLost = false;
    std::unique_ptr<AudioSystem> system;
};

class MonitoredFormat : public MonitorTest, public testing::WithParamInterface<SoundFiles::Kind> {};

TEST_P(MonitoredFormat, WhatIsHeardEqualsTheDecodedFile)
{
    const QString path = makeFile(GetParam().name, 3, QString::fromLatin1(GetParam().arguments));
    const std::vector<float> expected = TestTones::left(SoundFiles::decoded(path));
    server->startRecording();
    auto player = system->open(path, {});
    std::atomic<bool> hasFinished = false;
    player->setFinishHandler([&](bool) { hasFinished = true; });
    player->play();
    ASSERT_TRUE(comesTrue([&] { return hasFinished.load(); }, Seconds(10)));
    std::this_thread::sleep_for(Seconds(0.3));
    std::vector<float> heard = server->stopRecording();
    const std::vector<float> sound = Recordings::withoutSilenceInFront(expected);
    ASSERT_GE(heard.size(), sound.size());
    EXPECT_EQ(Recordings::firstDifference(heard, sound), sound.size());
}

INSTANTIATE_TEST_SUITE_P(Formats, MonitoredFormat,
                         testing::Values(SoundFiles::Kind{"tone.mp3", "-b:a 320k"}, SoundFiles::Kind{"tone.flac", ""},
                                         SoundFiles::Kind{"tone.wav", ""}, SoundFiles::Kind{"tone.aiff", ""},
                                         SoundFiles::Kind{"tone.m4a", "-b:a 256k"}),
                         [](const auto& info) {
                             return QString::fromLatin1(info.param.name).section(u'.', 1).toStdString();
                         });

TEST_F(MonitorTest, ASeekIsHeardAtItsSampleWithBothFades)
{
    const QString path = makeFile("tone.wav", 30);
    const std::vector<float> expected = TestTones::left(SoundFiles::decoded(path));
    server->startRecording();
    auto player = system->open(path, {});
    player->play();
    std::this_thread::sleep_for(Seconds(0.8));
    player->setVolume(0, 0.012);
    std::this_thread::sleep_for(Seconds(0.014));
    player->setCurrentTime(20);
    player->setVolume(1, 0.018);
    std::this_thread::sleep_for(Seconds(1));
    const std::vector<float> heard = server->stopRecording();

    const size_t fadesFrom = Recordings::firstDifference(heard, Recordings::withoutSilenceInFront(expected));
    constexpr size_t kDown = 529;
    constexpr size_t kUp = 794;
    ASSERT_LT(fadesFrom + kDown + kRate / 2, heard.size());
    // Behind the fade and whatever silence it took, the new place comes up; find it by its first full sample.
    size_t best = 0;
    const size_t target = 20U * kRate;
    for (size_t begin = fadesFrom + kDown - 2; begin < fadesFrom + kDown + kRate / 10 && best == 0; ++begin) {
        bool isThere = true;
        for (size_t index = kUp; index < kUp + 2000 && isThere; ++index)
            isThere = std::abs(heard[begin + index] - expected[target + index]) <= Recordings::kQuantisationStep;
        if (isThere)
            best = begin;
    }
    ASSERT_GT(best, 0U) << "the place that was asked for is not heard";
    EXPECT_LT(best - fadesFrom, static_cast<size_t>(kSeekLimitSeconds * kRate)) << "from the first faded sample on";
    for (size_t index = 0; index < kUp; index += 10) {
        const auto gain = static_cast<float>(index + 1) / static_cast<float>(kUp);
        ASSERT_NEAR(heard[best + index], expected[target + index] * gain, 1e-3) << index;
    }
}

TEST_F(MonitorTest, AServerThatDiesPausesThePlayer)
{
    auto player = system->open(makeFile("tone.wav", 30), {});
    player->play();
    ASSERT_TRUE(comesTrue([&] { return player->currentTime() > 0.5; }, Seconds(5)));
    server->kill();
    ASSERT_TRUE(comesTrue([&] { return isLost.load(); }, Seconds(10)));
    EXPECT_FALSE(player->isPlaying());
    const double position = player->currentTime();
    server = std::make_unique<SoundServer>(kRate);
    server->startRecording();
    player->play();
    EXPECT_TRUE(comesTrue([&] { return server->recorded().size() > kRate / 4; }, Seconds(10)));
    EXPECT_GT(player->currentTime(), position);
}

} // namespace
