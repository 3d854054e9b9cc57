#include "support/TempoFixture.h"

#include "async/MainQueue.h"

/// How analysis gives way to the player. The concern is built alone, to see whom it calls.
class TempoPlaybackTest : public TempoFixture {
protected:
    TempoPlaybackTest()
        : order({workspace(), results, preferences, notifications, clock, {}, {}, {}, {}, {}, {}})
        , alone({workspace(),
                 order,
                 results,
                 store->status(),
                 store->tagWriting(),
                 store->fileEvents(),
                 notifications,
                 clock,
                 executor,
                 [this](const QUrl& url, const BPMAnalysisMode& mode, const std::stop_token& stop) {
                     return analyzer(url, mode, stop);
                 },
                 {},
                 {},
                 [this] { ++scheduledSaves; },
                 [this] { ++forcedSaves; },
                 [this] { quiet.append(QStringLiteral("cancel")); },
                 [this] { quiet.append(QStringLiteral("start")); }})
    {
    }

    void play(const std::optional<TrackID>& id) { alone.playbackStateDidChange(true, id); }
    void pause() { alone.playbackStateDidChange(false, std::nullopt); }
    void wait(double seconds) { clock.advance(async::seconds(seconds)); }
    void finish()
    {
        for (int round = 0; round < 3; ++round) {
            executor.runAll();
            wait(1);
        }
    }

    TempoResults results;
    int scheduledSaves = 0;
    int forcedSaves = 0;
    QStringList quiet;
    Order order;
    Tempo alone;
};

TEST_F(TempoPlaybackTest, PlayingAQueuedTrackBringsItToTheFrontAndNothingElse)
{
    const QList<Track> tracks = make(5);
    alone.detectBPM(ids(tracks));
    play(tracks[3].id());
    executor.runAll(); // the two that ran were stopped
    EXPECT_TRUE(analysed.isEmpty());
    wait(1);
    executor.runAll();
    EXPECT_EQ(analysed, QStringList({QStringLiteral("d.mp3"), QStringLiteral("b.mp3"), QStringLiteral("a.mp3"),
                                     QStringLiteral("c.mp3"), QStringLiteral("e.mp3")}))
        << "the stopped ones are in front, in reverse";
    EXPECT_TRUE(std::ranges::all_of(modes, &BPMAnalysisMode::lowImpact));
}

TEST_F(TempoPlaybackTest, PlayingQueuesATrackOnlyIntoABatchThatRuns)
{
    struct Row {
        const char* name;
        int batch;
        QString tag;
        QString estimate;
        QString analysed;
    };
    const Row cases[] = {
        {"nothing runs", 0, {}, {}, {}},
        {"a batch runs", 2, {}, {}, QStringLiteral("b.mp3 a.mp3 c.mp3")},
        {"it has a tag", 2, QStringLiteral("100"), {}, QStringLiteral("b.mp3 a.mp3")},
        {"it has an estimate", 2, {}, QStringLiteral("100"), QStringLiteral("b.mp3 a.mp3")},
    };
    for (const Row& test : cases) {
        SCOPED_TRACE(test.name);
        QList<Track> tracks = make(3);
        tracks[2] = withTempo(tracks[2], test.tag);
        fill(tracks);
        TempoTables tables;
        if (!test.estimate.isEmpty())
            tables.estimatedBPMByTrackID.insert(tracks[2].id(), test.estimate);
        alone.restoreTempoTables(tables);
        analysed.clear();
        alone.detectBPM(ids(tracks.first(test.batch)));
        play(tracks[2].id());
        play(QUuid::createUuid()); // another one that is no row: no priority is left
        finish();
        EXPECT_EQ(analysed.join(u' '), test.analysed);
        pause();
        finish();
    }
}

TEST_F(TempoPlaybackTest, AnalysesChangeTheirPaceWithThePlayer)
{
    const QList<Track> tracks = make(4);
    alone.detectBPM(ids(tracks));
    ASSERT_EQ(executor.pendingCount(), 2);
    play(std::nullopt);
    EXPECT_EQ(quiet, QStringList({QStringLiteral("cancel")}));
    wait(2);
    EXPECT_EQ(executor.pendingCount(), 2) << "no other one starts beside those that have not gone yet";
    executor.runAll();
    EXPECT_EQ(executor.pendingCount(), 0);
    wait(0.11);
    ASSERT_EQ(executor.pendingCount(), 1) << "one at a time";
    EXPECT_TRUE(alone.playlistBPMState(tracks[1].id()).isAnalyzing) << "the one that was put back last";
    play(std::nullopt);
    executor.runOne();
    EXPECT_EQ(modes.size(), 1) << "a gentle one goes on";
    EXPECT_TRUE(modes.last().lowImpact);

    pause();
    executor.runOne();
    EXPECT_EQ(modes.size(), 1) << "stopped, to begin again at full pace";
    wait(0.06);
    ASSERT_EQ(executor.pendingCount(), 2);
    executor.runAll();
    EXPECT_EQ(modes.size(), 4);
    EXPECT_FALSE(modes.last().lowImpact);
    EXPECT_EQ(QSet<QString>(analysed.cbegin(), analysed.cend()).size(), 4);
}

TEST_F(TempoPlaybackTest, TheOtherAnalysesComeBackASecondAfterTheMusicOrAfterFiftyLooks)
{
    const QString cancel = QStringLiteral("cancel");
    const QString start = QStringLiteral("start");
    play(std::nullopt);
    pause();
    wait(0.59);
    play(std::nullopt); // the next song
    wait(10);
    EXPECT_EQ(quiet, QStringList({cancel, cancel}));
    pause();
    wait(0.61);
    EXPECT_EQ(quiet, QStringList({cancel, cancel, start}));

    quiet.clear();
    const QList<Track> tracks = make(3);
    alone.detectBPM(ids(tracks));
    pause(); // while full pace runs: nothing is stopped
    wait(5.5);
    EXPECT_TRUE(quiet.isEmpty());
    wait(0.11);
    EXPECT_EQ(quiet, QStringList({start})) << "long enough";
    executor.runAll();
    EXPECT_EQ(analysed.size(), 3);
}

TEST_F(TempoPlaybackTest, ABatchSavesEveryFiveSecondsAndAtItsEnd)
{
    const QList<Track> tracks = make(5);
    alone.detectBPM(ids(tracks));
    executor.runOne();
    EXPECT_EQ(forcedSaves, 1);
    executor.runOne();
    EXPECT_EQ(forcedSaves, 1);
    wait(4.99);
    executor.runOne();
    EXPECT_EQ(forcedSaves, 1);
    EXPECT_EQ(scheduledSaves, 0);
    executor.runOne();
    EXPECT_EQ(scheduledSaves, 1) << "no track waits any more, though one is being heard";
    wait(0.01);
    executor.runOne();
    EXPECT_EQ(forcedSaves, 2);
    EXPECT_EQ(scheduledSaves, 1);
}

TEST_F(TempoPlaybackTest, ThePlayerOfTheStoreIsFollowed)
{
    const QList<Track> tracks = make(3);
    tempo().detectBPM(ids(tracks));
    store->playback().playbackStateDidChange(true, tracks[2].id());
    wait(1);
    executor.runAll();
    wait(1);
    executor.runAll();
    ASSERT_EQ(analysed.size(), 3);
    EXPECT_EQ(analysed.first(), QStringLiteral("c.mp3"));
    EXPECT_TRUE(modes.first().lowImpact);
}
