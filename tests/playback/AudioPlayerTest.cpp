#include "support/PlayerFixture.h"

#include "async/MainQueue.h"
#include "platform/FileURL.h"

#include <QSignalSpy>

using AudioPlayerTest = PlayerFixture;

TEST_F(AudioPlayerTest, StartsAndTellsInOrder)
{
    audio.latency = 0.03;
    EXPECT_EQ(open(a).takeCalls(), QStringList({QStringLiteral("volume 0.8"), QStringLiteral("play")}));
    EXPECT_EQ(player->currentID(), a.id());
    EXPECT_TRUE(player->isPlaying());
    EXPECT_EQ(player->progress().duration(), 200);
    EXPECT_EQ(time(), 0);
    const QStringList expected = {QStringLiteral("store playing a.mp3"), QStringLiteral("changed"),
                                  QStringLiteral("waveform playing a.mp3")};
    EXPECT_EQ(events, expected);

    open(b);
    EXPECT_EQ(audio.openCount(), 1) << "one file at a time";
    player->stopAndClear();
    EXPECT_EQ(audio.openCount(), 0);
    EXPECT_FALSE(player->currentID() || player->currentTrack() || player->isPlaying());
    EXPECT_EQ(player->progress().duration(), 0);
    EXPECT_EQ(clock.pendingCount(), 0) << "no ticks without a file";
    async::MainQueue::drain();
    EXPECT_EQ(events.last(), QStringLiteral("waveform idle -"));
}

TEST_F(AudioPlayerTest, TogglesWhatPlays)
{
    player->toggle();
    EXPECT_TRUE(events.isEmpty()) << "nothing without a file";
    open(a);
    advance(2.55);
    events.clear();
    player->play(a);
    EXPECT_FALSE(player->isPlaying());
    EXPECT_NEAR(time(), 2.55, 1e-6) << "where the player stands, not where the last tick saw it";
    EXPECT_EQ(clock.pendingCount(), 0);
    EXPECT_EQ(events.first(), QStringLiteral("store idle a.mp3"));
    advance(10);
    EXPECT_NEAR(time(), 2.55, 1e-6);
    player->toggle();
    advance(1);
    EXPECT_TRUE(player->isPlaying());
    EXPECT_NEAR(time(), 3.55, 1e-6);
    EXPECT_TRUE(finished.isEmpty());
}

TEST_F(AudioPlayerTest, TicksFollowTheDeviceClock)
{
    open(a);
    QSignalSpy ticks(&player->progress(), &AudioPlaybackProgress::currentTimeChanged);
    advance(1.0001);
    EXPECT_EQ(ticks.size(), 10);
    EXPECT_NEAR(time(), 1.0, 1e-6);
    player->setScrubbing(true);
    advance(1);
    EXPECT_EQ(ticks.size(), 10) << "nothing while the position is held by hand";
    player->setScrubbing(false);
    EXPECT_NEAR(time(), 1.0, 1e-6) << "goes on from what was shown";
    advance(0.1);
    EXPECT_NEAR(time(), 1.1, 0.001);
    file().setDeviceClockBack(50);
    advance(0.1);
    EXPECT_GE(time(), 0.999);
    EXPECT_LE(time(), 1.2) << "a clock that went back counts as standing still";
    file().setDeviceClockBack(0);
    advance(300);
    EXPECT_EQ(time(), 200);
}

TEST_F(AudioPlayerTest, ACompletionIsToldOnce)
{
    const std::tuple<const char*, std::function<void()>, int> cases[] = {
        {"the end by itself", [&] { advance(201); }, 1},
        {"told twice", [&] { finish(), finish(); }, 1},
        {"decoder gives up", [&] { file().finish(false), async::MainQueue::drain(); }, 0},
        {"plays again before the news arrives", [&] { file().finish(), player->toggle(), async::MainQueue::drain(); },
         0},
        {"late news of the file before",
         [&] {
             const auto tellLate = file().finishHandler();
             open(b);
             player->toggle();
             tellLate(true);
             async::MainQueue::drain();
         },
         0},
        {"another file before the news arrives", [&] { file().finish(), open(b); }, 0},
        {"seek and end together",
         [&] { player->scheduleSeek(200, true), file().finish(), async::MainQueue::drain(), advance(1); }, 1},
        {"replayed and ended again", [&] { finish(), player->play(a), advance(201); }, 2},
        {"toggled and ended again", [&] { finish(), player->toggle(), advance(201); }, 2},
        {"moved back, resumed and ended again",
         [&] { finish(), player->scheduleSeek(100, false), player->toggle(), advance(101); }, 2},
    };
    for (const auto& [name, act, completions] : cases) {
        SCOPED_TRACE(name);
        player->stopAndClear();
        open(a);
        finished.clear();
        act();
        EXPECT_EQ(finished.size(), completions);
        for (const auto& id : finished)
            EXPECT_EQ(id, a.id());
        if (completions > 0) {
            EXPECT_FALSE(player->isPlaying());
            EXPECT_EQ(time(), 200);
            EXPECT_EQ(clock.pendingCount(), 0);
            EXPECT_EQ(player->currentID(), a.id()) << "the file stays for a restart";
        }
    }
}

TEST_F(AudioPlayerTest, ADamagedFileIsShorterThanItSaid)
{
    open(a);
    advance(50);
    file().setDuration(60);
    advance(20);
    EXPECT_EQ(player->progress().duration(), 60);
    EXPECT_EQ(time(), 60);
    ASSERT_EQ(finished.size(), 1);
    player->play(a);
    EXPECT_TRUE(player->isPlaying());
    EXPECT_EQ(time(), 0);
}

TEST_F(AudioPlayerTest, TheVolumeIsReadTamed)
{
    const std::pair<QVariant, float> cases[] = {{{}, 0.8F},
                                                {QStringLiteral("loud"), 0.8F},
                                                {QStringLiteral("0.25"), 0.25F},
                                                {7, 1},
                                                {-1, 0},
                                                {std::numeric_limits<double>::quiet_NaN(), 0.8F}};
    for (const auto& [stored, volume] : cases) {
        SCOPED_TRACE(qPrintable(stored.toString()));
        preferences.store().set(QStringLiteral("velmora.playerVolume"), stored);
        makePlayer();
        EXPECT_EQ(player->volumeState().value(), volume);
    }
}

TEST_F(AudioPlayerTest, OnlyTheLastVolumeOfADragIsStored)
{
    open(a).takeCalls();
    QSignalSpy writes(&preferences, &Preferences::changed);
    QSignalSpy changes(&player->volumeState(), &AudioVolumeState::valueChanged);
    player->setVolume(0.80001);
    player->setVolume(std::numeric_limits<double>::quiet_NaN());
    advance(1);
    EXPECT_EQ(changes.size() + writes.size() + file().takeCalls().size(), 0);

    player->setVolume(0.5);
    advance(0.2);
    player->setVolume(3);
    EXPECT_EQ(file().gain(), 1);
    advance(0.24);
    EXPECT_EQ(writes.size(), 0);
    advance(0.02);
    EXPECT_EQ(writes.size(), 1);
    EXPECT_EQ(preferences.playerVolume.get(), 1);

    player->setVolume(0.3);
    player.reset();
    EXPECT_EQ(preferences.playerVolume.get(), 0.3) << "the end of the program does not wait";
}

TEST_F(AudioPlayerTest, KnowsItsTrackByIdOrPlace)
{
    const Track noFile;
    EXPECT_TRUE(player->matchesCurrentTrack(noFile)) << "two absent places are equal";
    EXPECT_FALSE(player->matchesCurrentTrack(a));
    open(a);
    const std::pair<Track, bool> cases[] = {{a, true},
                                            {b, false},
                                            {track("a.mp3"), true},
                                            {track("x/../a.mp3"), true},
                                            {track("A.mp3"), false},
                                            {Track(a.id(), b.url()), true},
                                            {noFile, false}};
    for (const auto& [track, matches] : cases)
        EXPECT_EQ(player->matchesCurrentTrack(track), matches) << qPrintable(track.url().toString());
}

TEST_F(AudioPlayerTest, TheWaveformShowsWhatIsHeard)
{
    const std::pair<double, double> cases[] = {
        {0, 0}, {0.1, 0.1}, {0.7, 0.25}, {-1, 0}, {std::numeric_limits<double>::quiet_NaN(), 0}};
    for (const auto& [latency, heardLate] : cases) {
        SCOPED_TRACE(latency);
        player->stopAndClear();
        EXPECT_EQ(player->synchronizedWaveformProgress(), 0);
        audio.latency = latency;
        open(a);
        EXPECT_EQ(player->synchronizedWaveformProgress(), 0) << "never before the beginning";
        advance(50.04);
        EXPECT_NEAR(player->synchronizedWaveformProgress() * 200, 50.04 - heardLate, 1e-6) << "between ticks too";
        player->scheduleSeek(100, false);
        EXPECT_EQ(player->synchronizedWaveformProgress(), 0.5) << "a place asked for is shown at once";
        advance(0.014);
        EXPECT_NEAR(player->synchronizedWaveformProgress() * 200, 100 - heardLate, 1e-6);
        player->toggle();
        EXPECT_NEAR(player->synchronizedWaveformProgress() * 200, 100, 1e-6) << "nothing is on its way in a pause";
    }
    for (const double unusable : {0.0, std::numeric_limits<double>::infinity()}) {
        audio.setDuration(b.url().toLocalFile(), unusable);
        open(b);
        EXPECT_EQ(player->synchronizedWaveformProgress(), 0) << unusable;
    }
}
