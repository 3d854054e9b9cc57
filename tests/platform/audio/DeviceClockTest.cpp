#include "platform/audio/output/DeviceClock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr double kTurn = 0.01;

TEST(DeviceClock, FollowsTheSoundSmoothlyThroughJitter)
{
    DeviceClock clock;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> jitter(0, 0.006);
    double sound = 0;
    double last = 0;
    double worst = 0;
    double worstStep = 0;
    for (int turn = 0; turn < 3000; ++turn) {
        const double time = 100 + turn * kTurn + jitter(random);
        clock.tell({sound, sound + kTurn, time});
        sound += kTurn;
        for (const double later : {0.0005, 0.0035}) {
            const double shown = clock.at(time + later);
            ASSERT_GE(shown, last);
            if (turn > 100) {
                worst = std::max(worst, std::abs(shown - (turn * kTurn + later + 0.003)));
                worstStep = std::max(worstStep, shown - last);
            }
            last = shown;
        }
    }
    EXPECT_LT(worst, 0.007);
    EXPECT_LT(worstStep, 0.016);
}

TEST(DeviceClock, DoesNotDriftAgainstADeviceWithAnotherIdeaOfASecond)
{
    DeviceClock clock;
    double sound = 0;
    double shown = 0;
    for (int turn = 0; turn < 30'000; ++turn) { // five minutes, the device 0.1 % fast
        const double time = 50 + turn * kTurn / 1.001;
        clock.tell({sound, sound + kTurn, time});
        sound += kTurn;
        shown = clock.at(time + 0.001);
    }
    EXPECT_NEAR(shown, sound, kTurn + 0.001);
}

TEST(DeviceClock, StandsStillWhileNothingGoesOutAndGoesOnFromThere)
{
    DeviceClock clock;
    clock.tell({0, kTurn, 10});
    EXPECT_NEAR(clock.at(10.004), 0.004, 1e-9);
    EXPECT_NEAR(clock.at(10.5), kTurn, 1e-9) << "a late turn does not let it run on";
    clock.tell({kTurn, kTurn, 11});
    EXPECT_NEAR(clock.at(20), kTurn, 1e-9);
    clock.tell({kTurn, 2 * kTurn, 30});
    EXPECT_NEAR(clock.at(30.005), 0.015, 1e-9);
}

TEST(DeviceClock, NeverGoesBack)
{
    DeviceClock clock;
    clock.tell({1, 1 + kTurn, 5});
    const double shown = clock.at(5.009);
    clock.tell({1 + kTurn / 2, 1 + kTurn, 5.0091});
    EXPECT_GE(clock.at(5.0092), shown);
    EXPECT_GE(clock.at(4.0), shown) << "nor with the system's clock";
}

} // namespace
