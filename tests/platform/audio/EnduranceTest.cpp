// Five minutes of sound while the machine has its hands full: nothing may be missing and nothing may come twice.

#include "platform/audio/AudioFilePlayer.h"
#include "support/Machine.h"
#include "support/Recordings.h"
#include "support/SoundFiles.h"
#include "support/SoundServer.h"
#include "support/TestTones.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

constexpr int kRate = 44100;
constexpr double kSeconds = 300;
constexpr double kLimitSeconds = kSeconds + 30;

/// Two decoders at the priority that analyses have while something plays, as long as it lives.
class Load {
public:
    explicit Load(const QString& path)
    {
        for (QProcess& process : m_processes) {
            process.setStandardInputFile(QProcess::nullDevice());
            const QString words = QStringLiteral("-n 10 ffmpeg -v error -threads 1 -stream_loop -1 -i %1 -f null -");
            process.start(QStringLiteral("nice"), words.arg(path).split(u' '));
            process.waitForStarted();
        }
    }
    ~Load()
    {
        for (QProcess& process : m_processes) {
            EXPECT_EQ(process.state(), QProcess::Running) << "the machine was not loaded all the time";
            process.kill();
            process.waitForFinished();
        }
    }

private:
    std::array<QProcess, 2> m_processes;
};

TEST(Endurance, FiveMinutesOnALoadedMachineAreWhole)
{
    if (const QString reason = SoundServer::whyNot(); !reason.isEmpty())
        GTEST_SKIP() << "the sound cannot be recorded: " << reason.toStdString();
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("long.mp3"));
    ASSERT_TRUE(TestTones::make(path, kSeconds, kRate, QStringLiteral("-af adelay=250:all=1 -b:a 320k")));
    const std::vector<float> expected = Recordings::withoutSilenceInFront(TestTones::left(SoundFiles::decoded(path)));
    SoundServer server(kRate);
    const auto system = makeAudioSystem({});
    const Load load(path);
    server.startRecording();
    const auto player = system->open(path, {});
    std::atomic<bool> hasFinished = false;
    player->setFinishHandler([&](bool) { hasFinished = true; });
    player->play();
    comesTrue([&] { return hasFinished.load(); }, std::chrono::duration<double>(kLimitSeconds));
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const std::vector<float> heard = server.stopRecording();
    ASSERT_TRUE(hasFinished);
    ASSERT_GE(heard.size(), expected.size());
    EXPECT_EQ(Recordings::firstDifference(heard, expected), expected.size());
}

} // namespace
