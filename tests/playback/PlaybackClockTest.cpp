#include "playback/PlaybackClock.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

TEST(PlaybackClockTest, StaysWithinTheTrack)
{
    struct Case {
        PlaybackClock::Anchor anchor;
        double deviceTime;
        double duration;
        double expected;
    };
    const Case cases[] = {{{5, 10}, 7, 100, 12},    {{5, 10}, 4, 100, 10},    {{5, 10}, 500, 100, 100},
                          {{5, -9}, 7, 100, 0},     {{5, 10}, 7, 0, 0},       {{5, 10}, 7, -1, 0},
                          {{5, kNaN}, 7, 100, 0},   {{5, 10}, kNaN, 100, 10}, {{5, 10}, 7, kNaN, 0},
                          {{0, 0}, kInfinity, 9, 9}};
    for (const Case& test : cases)
        EXPECT_EQ(PlaybackClock::trackTime(test.anchor, test.deviceTime, test.duration), test.expected)
            << test.anchor.trackTime << ' ' << test.deviceTime << ' ' << test.duration;
}

TEST(PlaybackClockTest, AFractionIsOne)
{
    struct Case {
        double time;
        double duration;
        double expected;
    };
    const Case cases[] = {{25, 100, 0.25}, {-1, 100, 0}, {101, 100, 1},       {1, 0, 0},
                          {1, -5, 0},      {kNaN, 5, 0}, {1, kInfinity, 0.0}, {1e-300, 1e300, 0}};
    for (const Case& test : cases)
        EXPECT_EQ(PlaybackClock::fraction(test.time, test.duration), test.expected)
            << test.time << ' ' << test.duration;
}
