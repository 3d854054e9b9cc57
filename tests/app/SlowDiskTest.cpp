// The whole program on a disk that takes its time: what the user hears does not wait for what is being written.

#include "support/AppFixture.h"

#include "core/library/tagwriting/TagWriting.h"
#include "support/Encoder.h"
#include "support/SlowFsync.h"

#include <QElapsedTimer>

#include <thread>

namespace {

class SlowDiskTest : public AppFixture {
protected:
    SlowDiskTest()
    {
        auto preferences = newPreferences(std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("a.ini"))));
        preferences->keepsOtherTagEntriesAsked.set(true);
        start(std::move(preferences));
        app->open({});
    }
    ~SlowDiskTest() override { setFsyncDelay(0); }

    QList<Track> files(int count)
    {
        const QString first = folder.filePath(QStringLiteral("0.mp3"));
        EXPECT_TRUE(Encoder::encode(QStringLiteral("sine=duration=1"), first));
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
};

} // namespace

TEST_F(SlowDiskTest, PlayDoesNotWaitBehindSaves)
{
    const int saves = std::max(2, int(std::thread::hardware_concurrency()));
    const QList<Track> tracks = files(saves + 1);
    workspace().setTracks(tracks);
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
