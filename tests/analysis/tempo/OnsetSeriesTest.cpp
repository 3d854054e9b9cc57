#include "analysis/tempo/OnsetSeries.h"

#include "analysis/tempo/FastLog1p.h"
#include "analysis/tempo/MelMap.h"
#include "analysis/tempo/NormalizedOnset.h"
#include "tempo/TempoSignals.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace BPMAnalyzer;

TEST(OnsetSeries, EmptyBelowOneFrame)
{
    Pace pace = TempoSignals::freePace();
    for (const std::vector<float>& series : spectralFluxEnvelope(TempoSignals::noise(1023), pace))
        EXPECT_TRUE(series.empty());
}

TEST(OnsetSeries, StopWithinSixteenFrames)
{
    std::stop_source source;
    TempoSignals::CountedClock time{.step = async::seconds(0.001)};
    Pace pace{.stop = source.get_token(), .budget = CooperativeDSPBudget(true, time.clock())};
    time.onLook = [&] {
        if (time.looks == 5)
            source.request_stop();
    };
    EXPECT_THROW(rawOnsets(TempoSignals::noise(60000), pace), async::Cancelled);
    EXPECT_LE(time.looks, 6); // after a rest it looks once more
}

TEST(FastLog1p, KeepsItsRelativeError)
{
    EXPECT_EQ(fastLog1p(0), 0);
    for (double exponent = -30; exponent < 29; exponent += 0.003) {
        const float x = static_cast<float>(std::pow(10, exponent));
        const double expected = std::log1p(double(x));
        ASSERT_NEAR(fastLog1p(x), expected, 2e-7 * expected) << x;
    }
}

TEST(MelMap, BandsFollowEachOtherAlsoWhereBinsAreFew)
{
    for (const auto& [size, rate] : {std::pair(1024, 11025.0), {256, 44100.0}, {64, 8000.0}}) {
        const MelMap map(size, rate);
        for (std::size_t i = 1; i < map.bands.size(); ++i)
            EXPECT_EQ(map.bands[i].first, map.bands[i - 1].end) << size << ' ' << i;
        EXPECT_GE(map.bands.front().first, 1);
        EXPECT_LE(map.bands.back().end, size / 2);
    }
    EXPECT_EQ(MelMap(1024, 11025).bands.back().end, 465) << "5 kHz is bin 464, which has no band above it";
}

TEST(NormalizedOnset, ScalesPeaksAndPressesTheRest)
{
    std::vector<float> values(400);
    for (std::size_t i = 20; i < values.size(); i += 40) {
        values[i] = 1;
        values[i - 1] = values[i + 1] = 0.5F;
    }
    const std::vector<float> result = normalizedOnset(values, kEnvelopeRate);
    ASSERT_EQ(result.size(), values.size());
    // Of the five frames that a peak has after smoothing, the one beside the highest is at the quantile.
    const double mean = 0.82 * 2 / 31;
    const double outer = 0.5 - mean;
    const double side = outer + 1 - mean;
    const double peak = side + 0.5 - mean;
    for (std::size_t i = 0; i < result.size(); ++i) {
        const int distance = std::abs(int(i % 40) - 20);
        const double expected = distance == 0   ? peak / side
                                : distance == 1 ? 0.28
                                : distance == 2 ? 0.28 * outer / side
                                                : 0;
        EXPECT_NEAR(result[i], expected, 1e-5) << i;
    }
}

TEST(NormalizedOnset, EdgesOfItsRange)
{
    EXPECT_EQ(normalizedOnset({1, 2, 3, 4}, 43), (std::vector<float>{1, 2, 3, 4})) << "too short to judge";
    EXPECT_EQ(normalizedOnset(std::vector<float>(50), 43), std::vector<float>(50));
    std::vector<float> burst(400, 0);
    for (std::size_t i = 0; i < burst.size(); i += 10)
        burst[i] = 0.01F;
    burst[200] = 100;
    const std::vector<float> result = normalizedOnset(burst, 43);
    EXPECT_EQ(result[200], 8) << "the ceiling";
    EXPECT_FLOAT_EQ(normalizedOnset({0, 0, 0, 1e-9F, 0, 0, 0}, 3)[3], 1e-9F * (1 - 0.82F / 7) / 3 / 1e-6F)
        << "no scale below a millionth";
}
