#include "WaveformScrubber/WaveformScrollSeekStepper.h"

#include <gtest/gtest.h>

#include <vector>

TEST(WaveformScrollSeekStepper, TurnsMovementsIntoSteps)
{
    using Source = WaveformScrollSeekStepper::Source;
    struct Event {
        double delta;
        Source source;
        double seconds; ///< 0: nothing
    };
    const std::pair<const char*, std::vector<Event>> cases[] = {
        {"each click", {{0.1, Source::Wheel, 3}, {-120, Source::Wheel, -3}, {0, Source::Wheel, 0}}},
        {"small movements add up", {{3, Source::Precise, 0}, {4.9, Source::Precise, 0}, {0.1, Source::Precise, 3}}},
        {"the rest is kept", {{15, Source::Precise, 3}, {1, Source::Precise, 3}, {7, Source::Precise, 0}}},
        {"one step per event", {{-24, Source::Precise, -3}, {-0.1, Source::Precise, -3}, {-0.1, Source::Precise, -3}}},
        {"a turn drops the rest", {{7, Source::Precise, 0}, {-7, Source::Precise, 0}, {-1, Source::Precise, -3}}},
        {"a turn at once", {{7, Source::Precise, 0}, {-9, Source::Precise, -3}, {8, Source::Precise, 3}}},
        {"a click drops the rest", {{7, Source::Precise, 0}, {1, Source::Wheel, 3}, {7, Source::Precise, 0}}},
        {"nothing keeps the rest", {{7, Source::Precise, 0}, {0, Source::Wheel, 0}, {1, Source::Precise, 3}}},
    };
    for (const auto& [name, events] : cases) {
        WaveformScrollSeekStepper stepper;
        for (const Event& event : events)
            EXPECT_EQ(stepper.consume(event.delta, event.source).value_or(0), event.seconds) << name;
    }
}

TEST(WaveformScrollAction, IsKeptByName)
{
    EXPECT_EQ(waveformScrollActionFromRawValue(QStringLiteral("volume")), WaveformScrollAction::Volume);
    EXPECT_EQ(waveformScrollActionFromRawValue(QStringLiteral("seek")), WaveformScrollAction::Seek);
    EXPECT_EQ(waveformScrollActionFromRawValue(QStringLiteral("")), std::nullopt);
}
