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
    const struct {
        const char* name;
        int batch;
        const char* tag;
        std::optional<QString> estimate;
        const char* heard;
    } cases[] = {
        {"nothing runs", 0, "", {}, ""},
        {"a batch runs", 2, "", {}, "bac"},
        {"it has a tag", 2, "100", {}, "ba"},
        {"it has an estimate", 2, "", QStringLiteral("100"), "ba"},
    };
    for (const auto& test : cases) {
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
