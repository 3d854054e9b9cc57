// The engine with real files on a device that takes its turns when the test says so.

#include "platform/audio/output/AudioEngine.h"
#include "support/Machine.h"
#include "support/ManualOutput.h"
#include "support/SoundFiles.h"
#include "support/TestTones.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

constexpr int kRate = 44100;

std::vector<float> span(const std::vector<float>& samples, size_t begin, size_t count)
{
    return {samples.begin() + static_cast<ptrdiff_t>(begin), samples.begin() + static_cast<ptrdiff_t>(begin + count)};
}

class AudioEngineTest : public testing::Test {
protected:
    AudioEngineTest()
        : engine([this] { return output.makeBackend(); })
    {
        engine.setEventHandler([this](AudioOutputEvent event) {
            const std::lock_guard lock(mutex);
            events.push_back(event);
        });
    }

    QString makeFile(const char* name, double seconds, int sampleRate = kRate)
    {
        const QString path = folder.filePath(QString::fromUtf8(name));
        EXPECT_TRUE(TestTones::make(path, seconds, sampleRate));
        return path;
    }

    /// Opens a file whose sound is remembered, and plays it.
    std::unique_ptr<AudioFilePlayer> play(const char* name, double seconds)
    {
        path = makeFile(name, seconds);
        sound = TestTones::left(SoundFiles::decoded(path));
        auto player = engine.open(path, {});
        player->play();
        return player;
    }

    /// What is heard next is that sound from one of its frames on. \param skipped frames that may be faded.
    void expectHeard(size_t from, size_t count, size_t skipped = 0)
    {
        const std::vector<float> heard = output.pullSound(static_cast<int>(count + skipped));
        ASSERT_GE(heard.size(), count + skipped);
        EXPECT_EQ(span(heard, skipped, count), span(sound, from + skipped, count));
    }

    int count(AudioOutputEvent event)
    {
        const std::lock_guard lock(mutex);
        return static_cast<int>(std::ranges::count(events, event));
    }

    QTemporaryDir folder;
    QString path;
    std::vector<float> sound;
    ManualOutput output;
    std::mutex mutex;
    std::vector<AudioOutputEvent> events;
    AudioEngine engine;
};

TEST_F(AudioEngineTest, WhatIsHeardIsWhatIsInTheFile)
{
    const auto player = play("tone.flac", 4);
    EXPECT_DOUBLE_EQ(player->duration(), 4.0);
    EXPECT_FALSE(engine.open(path, {})->isPlaying());
    EXPECT_TRUE(player->isPlaying());
    const std::vector<float> heard = output.pullSound(3 * kRate);
    ASSERT_GE(heard.size(), size_t(3 * kRate));
    EXPECT_EQ(heard, span(sound, 0, heard.size()));
    EXPECT_NEAR(player->currentTime(), static_cast<double>(heard.size()) / kRate, 1e-9);
}

TEST_F(AudioEngineTest, ASeekLandsOnItsFrame)
{
    const auto player = play("tone.wav", 6);
    output.pullSound(1000);
    for (const double target : {5.0, 0.0, 2.5, 2.5 + 1.0 / kRate}) {
        player->setVolume(0, 0.012);
        output.pull(1024);
        player->setCurrentTime(target);
        EXPECT_EQ(player->currentTime(), target);
        player->setVolume(1, 0.018);
        SCOPED_TRACE(target);
        // The fade back takes 793.8 frames; from there on the samples are the file's own.
        expectHeard(static_cast<size_t>(std::llround(target * kRate)), 3000, 800);
    }
}

TEST_F(AudioEngineTest, TheEndIsToldAfterItWasHeardAndOnce)
{
    output.latency = 0.05;
    auto player = engine.open(makeFile("short.wav", 0.5), {});
    std::atomic<int> finished = 0;
    player->setFinishHandler([&](bool successfully) { finished += successfully ? 1 : 100; });
    player->play();
    output.pullSound(kRate / 2 - 512);
    EXPECT_TRUE(player->isPlaying());
    output.pull(2048);
    const auto ended = std::chrono::steady_clock::now();
    ASSERT_TRUE(comesTrue([&] { return finished > 0; }));
    EXPECT_GE(std::chrono::steady_clock::now() - ended, std::chrono::milliseconds(30));
    EXPECT_FALSE(player->isPlaying());
    EXPECT_DOUBLE_EQ(player->currentTime(), 0.5);
    for (int turn = 0; turn < 20; ++turn)
        output.pull(1024);
    EXPECT_EQ(finished, 1);
    player->play();
    EXPECT_TRUE(player->isPlaying());
    output.pullSound(1000);
    EXPECT_LT(player->currentTime(), 0.1) << "starts over";
    output.pull(kRate);
    EXPECT_TRUE(comesTrue([&] { return finished == 2; }));
}

TEST_F(AudioEngineTest, TheNextFileTakesOverTheOpenDevice)
{
    auto player = play("first.wav", 2);
    output.pullSound(1000);
    player->stop();
    output.pull(512);                // its last moments
    player = play("second.flac", 2); // the one before goes when this one plays
    expectHeard(0, 5000);
    EXPECT_EQ(output.opened, 1);
}

TEST_F(AudioEngineTest, ADeviceThatDoesNotDoTheRateGetsTheFileResampled)
{
    output.refusedRate = kRate;
    auto player = engine.open(makeFile("tone.wav", 2), {});
    player->play();
    const std::vector<float> heard = output.pullSound(48000);
    ASSERT_GE(heard.size(), 48000U);
    EXPECT_NEAR(player->currentTime(), static_cast<double>(heard.size()) / 48000, 0.001);
    EXPECT_NEAR(player->duration(), 2.0, 0.001);
}

TEST_F(AudioEngineTest, ALostDevicePausesAndTheNextPlayFindsAnother)
{
    const auto player = play("tone.wav", 5);
    const size_t heard = output.pullSound(10'000).size();
    output.isAlive = false;
    ASSERT_TRUE(comesTrue([&] { return !player->isPlaying(); }));
    ASSERT_TRUE(comesTrue([&] { return count(AudioOutputEvent::Lost) == 1; }));
    EXPECT_NEAR(player->currentTime(), static_cast<double>(heard) / kRate, 1e-9);
    EXPECT_TRUE(output.pull(100).empty());
    player->play();
    EXPECT_TRUE(player->isPlaying());
    expectHeard(heard, 2000);
    EXPECT_EQ(output.scans, 1);
    EXPECT_EQ(count(AudioOutputEvent::Lost), 1);
}

TEST_F(AudioEngineTest, WithoutADeviceTimeGoesOnInSilence)
{
    output.isThere = false;
    auto player = engine.open(makeFile("tone.wav", 0.4), {});
    std::atomic<bool> hasFinished = false;
    player->setFinishHandler([&](bool) { hasFinished = true; });
    const auto started = std::chrono::steady_clock::now();
    player->play();
    ASSERT_TRUE(comesTrue([&] { return hasFinished.load(); }));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - started;
    EXPECT_GT(took.count(), 0.35);
    EXPECT_EQ(count(AudioOutputEvent::Silent), 1);
    EXPECT_NEAR(player->deviceCurrentTime(), 0.4, 0.011) << "within a turn";
}

TEST_F(AudioEngineTest, AnotherDeviceIsTakenInTheMiddle)
{
    const auto player = play("tone.wav", 5);
    const size_t heard = output.pullSound(5000).size();
    engine.setDevice(QStringLiteral("test/two"));
    ASSERT_TRUE(comesTrue([&] { return output.opened == 2; }));
    EXPECT_EQ(output.lastDevice(), QStringLiteral("test/two"));
    expectHeard(heard, 2000);
    EXPECT_TRUE(player->isPlaying());
}

TEST_F(AudioEngineTest, ADeviceThatRanDryGetsALongerBufferWithTheNextFile)
{
    const QString path = makeFile("tone.wav", 2);
    double before = 0;
    for (int underruns : {0, 3, 1, 1, 1, 0}) {
        SCOPED_TRACE(underruns);
        auto player = engine.open(path, {});
        player->play();
        output.pullSound(500);
        EXPECT_GE(output.wantedLatency, before);
        EXPECT_LE(output.wantedLatency, 0.2);
        before = output.wantedLatency;
        output.underruns = underruns;
        player->stop();
        output.pull(512);
    }
    EXPECT_GT(before, 0.1);
    EXPECT_EQ(output.opened, 3) << "the first and two longer ones";
}

TEST_F(AudioEngineTest, AFileThatIsReplacedCutShortOrRemovedPlaysOn)
{
    for (const char* how : {"removed", "cut", "overwritten"}) {
        SCOPED_TRACE(how);
        const auto player = play("tone.wav", 8);
        const size_t heard = output.pullSound(2000).size();
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // the file is in memory by then
        QFile file(path);
        if (how == std::string("removed")) {
            EXPECT_TRUE(file.remove());
        } else if (how == std::string("cut")) {
            EXPECT_TRUE(file.resize(100));
        } else {
            EXPECT_TRUE(file.open(QIODevice::ReadWrite)); // in place
            file.write(QByteArray(file.size(), 'x'));
            file.close();
        }
        expectHeard(heard, 6 * kRate);
    }
}

TEST_F(AudioEngineTest, PlayersComeAndGoInAnyOrder)
{
    const QString path = makeFile("tone.wav", 1);
    std::vector<std::unique_ptr<AudioFilePlayer>> players;
    for (int round = 0; round < 60; ++round) {
        players.push_back(engine.open(path, {}));
        players.back()->play();
        players.back()->setCurrentTime(0.01 * round);
        output.pull(64);
        if (round % 3 == 0)
            players.erase(players.begin());
    }
    players.back()->setCurrentTime(0);
    players.back()->play();
    EXPECT_GE(output.pullSound(1000).size(), 1000U);
}

} // namespace
