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
        const std::function<void()> events[] = {
            [&] {
                if (present && present->isPlaying())
                    present->finish(pick(4) != 0);
            },
            [&] { audio.loseDevice(); },
            [&] { executor.failOne(std::make_exception_ptr(AudioFileError(AudioFileError::Case::NoAudio))); },
            [&] { executor.runOne(); },
            [&] {
                if (present && pick(20) == 0)
                    present->setDuration(kDuration / 2);
            },
        };
        events[pick(int(std::size(events)))]();
    }

    void step()
    {
        const std::function<void()> steps[] = {
            [&] { player->play(m_tracks[pick(3)]); },
            [&] { player->toggle(); },
            [&] { seekSomewhere(); },
            [&] { seekSomewhere(); },
            [&] { player->setScrubbing(pick(2) == 0); },
            [&] { player->setVolume(random(-0.2, 1.2)); },
            [&] { pick(10) == 0 ? player->stopAndClear() : void(); },
            [&] { happen(); },
            [&] { happen(); },
            [&] { advance(random(0, 0.02)); },
            [&] { advance(pick(5) == 0 ? random(0, 2 * kDuration) : random(0, 0.5)); },
        };
        steps[pick(int(std::size(steps)))]();
    }

    /// Lets what is under way come to its end: files are opened, seeks are done.
    void settle()
    {
        executor.runAll();
        advance(0.015);
    }

    /// What holds in every moment.
    void expectSound()
    {
        const double duration = player->progress().duration();
        const FakeFilePlayer* const present = audio.last();
        EXPECT_TRUE(time() >= 0 && time() <= std::max(duration, 0.0)) << time() << " of " << duration;
        const double shown = player->synchronizedWaveformProgress();
        EXPECT_TRUE(shown >= 0 && shown <= 1) << "waveform at " << shown;
        EXPECT_FALSE(audio.openCount() > 1 || (present && player->isOpening())) << "a file too many";
        EXPECT_TRUE(!present || present->gain() == 0 || present->gain() == player->volumeState().value());
        EXPECT_EQ(player->currentID().has_value(), player->currentTrack().has_value()) << "half a track";
        EXPECT_TRUE(player->currentID() || (!player->isPlaying() && duration == 0)) << "playing nothing";
    }

    /// What holds once nothing is under way.
    void expectSettled()
    {
        const FakeFilePlayer* const present = audio.last();
        EXPECT_FALSE(player->isOpening());
        EXPECT_TRUE(present || !player->isPlaying()) << "no file plays";
        EXPECT_TRUE(!present || present->gain() == player->volumeState().value());
        EXPECT_FALSE(present && present->isPlaying() && !player->isPlaying() && !player->isScrubbing()) << "unseen";
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
        expectSound();
        if (i % 8 == 0) {
            settle();
            expectSound();
            expectSettled();
        }
        ASSERT_FALSE(HasFailure()) << "step " << i;
        if (i % 1000 == 0)
            events.clear();
    }
    player->stopAndClear();
    executor.runAll();
    advance(1);
    EXPECT_EQ(clock.pendingCount(), 0);
    EXPECT_GT(finished.size(), 1000);
}
