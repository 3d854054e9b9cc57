// The whole program on a disk that takes its time: what the user hears does not wait for what is being written.

#include "app/VelmoraApp.h"
#include "async/TaskSlot.h"
#include "core/library/LibraryStore.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"
#include "support/FakeAudio.h"
#include "support/ManualClock.h"
#include "support/SlowFsync.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <thread>

extern std::unique_ptr<QCoreApplication> (*makeTestApplication)(int&, char**);

namespace {

[[maybe_unused]] const bool kHasWidgets = [] {
    makeTestApplication = [](int& argc, char** argv) -> std::unique_ptr<QCoreApplication> {
        static const QTemporaryDir own; // nothing is put among the user's
        qputenv("XDG_CACHE_HOME", QFile::encodeName(own.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(own.path()));
        return std::make_unique<QApplication>(argc, argv);
    };
    return true;
}();

class SlowDiskTest : public testing::Test {
protected:
    SlowDiskTest()
    {
        auto preferences =
            std::make_unique<Preferences>(std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("a.ini"))));
        preferences->defaultsMigrated.set(true);
        preferences->keepsOtherTagEntriesAsked.set(true);
        app = std::make_unique<VelmoraApp>(std::move(preferences), std::make_unique<FakeAudioSystem>(audioClock));
        app->open({});
    }
    ~SlowDiskTest() override
    {
        setFsyncDelay(0);
        app.reset();
        EXPECT_EQ(async::liveTaskCount(), 0);
    }

    QList<Track> files(int count)
    {
        const QString first = folder.filePath(QStringLiteral("0.mp3"));
        EXPECT_EQ(QProcess::execute(QStringLiteral("ffmpeg"),
                                    {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-f"),
                                     QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("sine=duration=1"),
                                     first}),
                  0);
        QList<Track> tracks;
        for (int number = 0; number < count; ++number) {
            const QString path = folder.filePath(QString::number(number) + QStringLiteral(".mp3"));
            EXPECT_TRUE(number == 0 || QFile::copy(first, path));
            Track track = Track::unread(FileURL::fromPath(path));
            track.setIsInPlaylist(true);
            tracks.append(track);
        }
        return tracks;
    }

    QTemporaryDir folder;
    ManualClock audioClock;
    std::unique_ptr<VelmoraApp> app;
};

} // namespace

TEST_F(SlowDiskTest, PlayDoesNotWaitBehindSaves)
{
    const int saves = std::max(2, int(std::thread::hardware_concurrency()));
    const QList<Track> tracks = files(saves + 1);
    app->store().workspace().setTracks(tracks);
    setFsyncDelay(10'000);
    for (int number = 0; number < saves; ++number) {
        AudioTags tags = tracks[number].tags();
        tags.genre = QStringLiteral("House");
        app->store().tagWriting().save(tags, tracks[number].id());
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return waitingFsyncs() >= saves; }, 30'000)) << "the saves are under way";

    QElapsedTimer timer;
    timer.start();
    app->preferences().seekStep.set(20); // something is remembered on nearly every click
    app->player().play(tracks.last());
    EXPECT_TRUE(QTest::qWaitFor([&] { return app->player().isPlaying(); }, 5000));
    EXPECT_LT(timer.elapsed(), 300);
    EXPECT_GE(waitingFsyncs(), saves) << "still";
}
