#include "support/TempoFixture.h"

/// How analyses of tempo and key give way to the player, and what a long batch saves.
class TempoPlaybackTest : public TempoFixture {
protected:
    void play(const std::optional<TrackID>& id) { store->playback().playbackStateDidChange(true, id); }
    void pause() { store->playback().playbackStateDidChange(false, std::nullopt); }
    void wait(double seconds) { clock.advance(async::seconds(seconds)); }
    void finish()
    {
        for (int round = 0; round < 3; ++round) {
            executor.runAll();
            wait(1);
        }
    }
};

TEST_F(TempoPlaybackTest, PlayingAQueuedTrackBringsItToTheFrontAndNothingElse)
{
    const QList<Track> tracks = make(5);
    tempo().detectBPM(ids(tracks));
    play(tracks[3].id());
    executor.runAll(); // the two that ran were stopped
    EXPECT_EQ(heard(), "");
    wait(1);
    executor.runAll();
    EXPECT_EQ(heard(), "dbace") << "the stopped ones are in front, in reverse";
    EXPECT_TRUE(std::ranges::all_of(modes, &BPMAnalysisMode::lowImpact));
}

TEST_F(TempoPlaybackTest, PlayingQueuesATrackOnlyIntoABatchThatRuns)
{
    struct Row {
        const char* name;
        int batch;
        const char* tag;
        std::optional<QString> estimate;
        const char* heard;
    };
    const Row cases[] = {
        {"nothing runs", 0, "", {}, ""},
        {"a batch runs", 2, "", {}, "bac"},
        {"it has a tag", 2, "100", {}, "ba"},
        {"it has an estimate", 2, "", QStringLiteral("100"), "ba"},
    };
    for (const Row& test : cases) {
        SCOPED_TRACE(test.name);
        QList<Track> tracks = make(3);
        tracks[2] = withTempo(tracks[2], test.tag);
        fill(tracks);
        estimates(test.estimate ? QHash<TrackID, QString>{{tracks[2].id(), *test.estimate}}
                                : QHash<TrackID, QString>());
        tempo().detectBPM(ids(tracks.first(test.batch)));
        play(tracks[2].id());
        play(QUuid::createUuid()); // another one that is no row: no priority is left
        finish();
        EXPECT_EQ(heard(), test.heard);
        pause();
        finish();
    }
}

TEST_F(TempoPlaybackTest, AnalysesChangeTheirPaceWithThePlayer)
{
    const QList<Track> tracks = make(4);
    tempo().detectBPM(ids(tracks));
    ASSERT_EQ(executor.pendingCount(), 2);
    play(std::nullopt);
    wait(2);
    EXPECT_EQ(executor.pendingCount(), 2) << "no other one starts beside those that have not gone yet";
    executor.runOne();
    EXPECT_EQ(executor.pendingCount(), 1);
    executor.runOne();
    ASSERT_EQ(executor.pendingCount(), 1) << "one at a time";
    EXPECT_TRUE(isAnalyzing(tracks[1])) << "the one that was put back last";
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

TEST_F(TempoPlaybackTest, KeysWaitForTheEndOfTheMusicWhileTemposGoOn)
{
    const QList<Track> tracks = make(2);
    workspace().setList(Track::MetadataDestination::MusicalKey, {tracks[0]});
    play(std::nullopt);
    tempo().detectBPM(ids(tracks));
    store->keys().analyzeMusicalKey(ids({tracks[0]}));
    finish();
    EXPECT_EQ(heard(), "ab");
    EXPECT_TRUE(keyURLs.isEmpty());
    ASSERT_TRUE(store->board().first());
    pause();
    wait(0.59);
    play(std::nullopt); // the next song
    finish();
    pause();
    finish();
    EXPECT_EQ(keyURLs.size(), 1);
}

TEST_F(TempoPlaybackTest, ABatchSavesEveryFiveSecondsAndAtItsEnd)
{
    const QList<Track> tracks = make(5);
    QSignalSpy forced(&tempo(), &Tempo::checkpointReached);
    QSignalSpy saves(&tempo(), &Tempo::resultsChanged);
    tempo().detectBPM(ids(tracks));
    executor.runOne();
    EXPECT_EQ(forced.size(), 1);
    executor.runOne();
    EXPECT_EQ(forced.size(), 1);
    wait(4.99);
    executor.runOne();
    EXPECT_EQ(forced.size(), 1);
    EXPECT_EQ(saves.size(), 0);
    executor.runOne();
    EXPECT_EQ(saves.size(), 1) << "no track waits any more, though one is being heard";
    wait(0.01);
    executor.runOne();
    EXPECT_EQ(forced.size(), 2);
    EXPECT_EQ(saves.size(), 1);
}
