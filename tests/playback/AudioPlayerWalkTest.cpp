// A long random walk over everything that can be asked of the player and that can happen to it.

#include "support/PlayerFixture.h"

#include "async/MainQueue.h"

#include <random>

namespace {

constexpr int kSteps = 100'000;
constexpr double kDuration = 200;

class AudioPlayerWalkTest : public PlayerFixture {
protected:
    double random(double low, double high) { return std::uniform_real_distribution(low, high)(m_engine); }
    int pick(int count) { return std::uniform_int_distribution(0, count - 1)(m_engine); }

    void seekSomewhere()
    {
        const double target = pick(4) == 0 ? kDuration : random(-10, kDuration + 10);
        pick(2) == 0 ? player->scheduleSeek(target, false) : player->seek(target - kDuration / 2);
    }

    void happen()
    {
        FakeFilePlayer* const present = audio.last();
        switch (pick(5)) {
        case 0:
            if (present && present->isPlaying())
                present->finish(pick(4) != 0);
            return;
        case 1:
            audio.loseDevice();
            return;
        case 2:
            executor.failOne(std::make_exception_ptr(AudioFileError(AudioFileError::Case::NoAudio)));
            return;
        case 3:
            executor.runOne();
            return;
        default:
            if (present && pick(20) == 0)
                present->setDuration(kDuration / 2);
        }
    }

    void step()
    {
        switch (pick(11)) {
        case 0:
            player->play(m_tracks[pick(3)]);
            return;
        case 1:
            player->toggle();
            return;
        case 2:
        case 3:
            seekSomewhere();
            return;
        case 4:
            player->setScrubbing(pick(2) == 0);
            return;
        case 5:
            player->setVolume(random(-0.2, 1.2));
            return;
        case 6:
            if (pick(10) == 0)
                player->stopAndClear();
            return;
        case 7:
        case 8:
            happen();
            return;
        case 9:
            advance(random(0, 0.02));
            return;
        default:
            advance(pick(5) == 0 ? random(0, 2 * kDuration) : random(0, 0.5));
        }
    }

    /// Lets what is under way come to its end: files are opened, seeks are done.
    void settle()
    {
        executor.runAll();
        advance(0.015);
    }

    /// What holds in every moment.
    ::testing::AssertionResult isSound()
    {
        const double duration = player->progress().duration();
        const FakeFilePlayer* const present = audio.last();
        if (!(time() >= 0 && time() <= std::max(duration, 0.0)))
            return ::testing::AssertionFailure() << "position " << time() << " of " << duration;
        const double shown = player->synchronizedWaveformProgress();
        if (!(shown >= 0 && shown <= 1))
            return ::testing::AssertionFailure() << "waveform at " << shown;
        if (audio.openCount() > 1 || (present && player->isOpening()))
            return ::testing::AssertionFailure() << "a file too many";
        if (present && present->gain() != 0 && present->gain() != player->volumeState().value())
            return ::testing::AssertionFailure() << "gain " << present->gain();
        if (player->currentID().has_value() != player->currentTrack().has_value())
            return ::testing::AssertionFailure() << "half a track";
        if (!player->currentID() && (player->isPlaying() || duration != 0))
            return ::testing::AssertionFailure() << "playing nothing";
        return ::testing::AssertionSuccess();
    }

    /// What holds once nothing is under way.
    ::testing::AssertionResult isSettled()
    {
        const FakeFilePlayer* const present = audio.last();
        if (player->isOpening())
            return ::testing::AssertionFailure() << "still opening";
        if (!present)
            return player->isPlaying() ? ::testing::AssertionFailure() << "no file plays"
                                       : ::testing::AssertionSuccess();
        if (present->gain() != player->volumeState().value())
            return ::testing::AssertionFailure() << "gain " << present->gain();
        if (present->isPlaying() && !player->isPlaying() && !player->isScrubbing())
            return ::testing::AssertionFailure() << "plays unseen";
        return ::testing::AssertionSuccess();
    }

    const Track m_tracks[3] = {a, b, track("c.mp3")};

private:
    std::mt19937 m_engine{20'240'117};
};

} // namespace

TEST_F(AudioPlayerWalkTest, HoldsItsPromises)
{
    for (int i = 0; i < kSteps; ++i) {
        step();
        async::MainQueue::drain();
        ASSERT_TRUE(isSound()) << "step " << i;
        if (i % 8 == 0) {
            settle();
            ASSERT_TRUE(isSound()) << "settled after step " << i;
            ASSERT_TRUE(isSettled()) << "step " << i;
        }
        if (i % 1000 == 0)
            events.clear();
    }
    player->stopAndClear();
    executor.runAll();
    advance(1);
    EXPECT_EQ(clock.pendingCount(), 0);
    EXPECT_GT(finished.size(), 1000);
}
