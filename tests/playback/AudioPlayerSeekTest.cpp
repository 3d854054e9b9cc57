#include "support/PlayerFixture.h"

#include "async/MainQueue.h"

using AudioPlayerSeekTest = PlayerFixture;

namespace {

QStringList calls(const char* text)
{
    return QString::fromLatin1(text).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

constexpr const char* kOneJump = "volume 0 in 0.012, seek 60, volume 0.8 in 0.018";

} // namespace

TEST_F(AudioPlayerSeekTest, FadesOutJumpsAndFadesIn)
{
    open(a);
    advance(10);
    file().takeCalls();
    player->scheduleSeek(60, false);
    EXPECT_EQ(file().takeCalls(), calls("volume 0 in 0.012"));
    EXPECT_EQ(time(), 60) << "shown at once";
    advance(0.0139);
    EXPECT_TRUE(file().takeCalls().isEmpty());
    advance(0.0002);
    EXPECT_EQ(file().takeCalls(), calls("seek 60, volume 0.8 in 0.018"));
    advance(1);
    EXPECT_NEAR(time(), 61, 0.11);
    EXPECT_TRUE(player->isPlaying());
}

TEST_F(AudioPlayerSeekTest, ABurstIsOneJump)
{
    open(a);
    file().takeCalls();
    for (const double target : {20, 30, 40, 50, 60}) {
        player->scheduleSeek(target, false);
        advance(0.002);
    }
    advance(1);
    EXPECT_EQ(file().takeCalls(), calls(kOneJump));

    file().setCurrentTime(0);
    file().takeCalls();
    for (int i = 0; i < 4; ++i)
        player->seek(15);
    advance(0.02);
    EXPECT_EQ(file().takeCalls(), calls(kOneJump)) << "steps add up from the place asked for";
}

TEST_F(AudioPlayerSeekTest, WhatStandsStillJumpsAtOnce)
{
    const std::pair<double, double> cases[] = {
        {60, 60}, {0, 0}, {-5, 0}, {1e9, 200}, {std::numeric_limits<double>::infinity(), 200}};
    for (const auto& [target, reached] : cases) {
        for (const bool reportsAtEnd : {false, true}) {
            SCOPED_TRACE(target);
            player->stopAndClear();
            open(a);
            player->toggle();
            file().takeCalls();
            player->scheduleSeek(target, reportsAtEnd);
            EXPECT_EQ(file().takeCalls().size(), 1) << "no fade";
            EXPECT_EQ(file().currentTime(), reached);
            EXPECT_EQ(time(), reached);
            EXPECT_FALSE(player->isPlaying());
            EXPECT_EQ(clock.pendingCount(), 0);
        }
    }
    player->scheduleSeek(std::numeric_limits<double>::quiet_NaN(), false);
    EXPECT_EQ(time(), 200) << "no number, no seek";
    advance(5);
    EXPECT_TRUE(finished.isEmpty()) << "a place beyond the end of a pause only moves the position";
}

TEST_F(AudioPlayerSeekTest, AStepToTheEndCompletes)
{
    const std::tuple<double, double, bool> cases[] = {{190, 15, true},     {185, 15, true},      {185, 14.991, true},
                                                      {185, 14.98, false}, {199.99, -15, false}, {50, -100, false},
                                                      {50, 15, false}};
    for (const auto& [from, by, completes] : cases) {
        SCOPED_TRACE(from + by);
        player->stopAndClear();
        open(a);
        player->scheduleSeek(from, false);
        advance(0.014);
        finished.clear();
        player->seek(by);
        advance(0.014);
        EXPECT_EQ(finished.size(), completes ? 1 : 0);
        EXPECT_EQ(player->isPlaying(), !completes);
        EXPECT_EQ(file().gain(), 0.8F);
        EXPECT_NEAR(time(), std::clamp(from + by, 0.0, 200.0), 1e-6);
        if (completes) {
            player->play(a);
            EXPECT_EQ(time(), 0) << "a finished track starts over";
        }
    }
}

TEST_F(AudioPlayerSeekTest, WhateverComesMeanwhileLeavesNothingMuted)
{
    const struct {
        const char* name;
        double target;
        std::function<void()> meanwhile;
        bool isMutedMeanwhile; ///< until the jump, which then still comes
        bool isPlayingAfter;
        double timeAfter; ///< 14 ms after the request
        int completions;
    } cases[] = {
        {"pause", 60, [&] { player->toggle(); }, false, false, 10.005, 0},
        {"same track", 60, [&] { player->play(a); }, false, false, 10.005, 0},
        {"other track", 60, [&] { open(b); }, false, true, 0, 0},
        {"end, sought back", 60, [&] { finish(); }, true, true, 60, 0},
        {"end, sought near it", 199.6, [&] { finish(); }, false, false, 200, 1},
        {"end unnoticed, sought near it", 199.6, [&] { file().pause(); }, true, false, 199.6, 1},
        {"end, then a place by hand", 60, [&] { file().finish(), player->scheduleSeek(30, false); }, true, true, 30, 0},
        {"device lost", 60, [&] { audio.loseDevice(), async::MainQueue::drain(); }, false, false, 60, 0},
        {"volume", 60, [&] { player->setVolume(0.5); }, true, true, 60, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        player->stopAndClear();
        player->setVolume(0.8);
        open(a);
        advance(10);
        finished.clear();
        player->scheduleSeek(test.target, false);
        advance(0.005);
        test.meanwhile();
        EXPECT_EQ(file().gain(), test.isMutedMeanwhile ? 0 : player->volumeState().value());
        advance(0.014); // also for a seek that was asked for meanwhile
        EXPECT_EQ(file().gain(), player->volumeState().value());
        EXPECT_EQ(player->isPlaying(), test.isPlayingAfter);
        EXPECT_EQ(file().isPlaying(), test.isPlayingAfter);
        EXPECT_NEAR(time(), test.timeAfter, 0.0101);
        EXPECT_EQ(finished.size(), test.completions);
    }
}

TEST_F(AudioPlayerSeekTest, ScrubbingEndsWhereItIsShown)
{
    open(a);
    advance(10);
    player->setScrubbing(true);
    player->scheduleSeek(60, false);
    advance(0.014);
    advance(5);
    EXPECT_EQ(time(), 60) << "held";
    player->scheduleSeek(90, false);
    player->setScrubbing(false);
    EXPECT_EQ(time(), 90);
    advance(1.014);
    EXPECT_NEAR(time(), 91, 0.11);

    player->toggle();
    player->setScrubbing(true);
    player->scheduleSeek(20, false);
    player->setScrubbing(false);
    EXPECT_EQ(time(), 20);
    EXPECT_EQ(clock.pendingCount(), 0);
}
