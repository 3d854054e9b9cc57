#include "analysis/tempo/LagScores.h"

#include "analysis/tempo/BeatGrid.h"
#include "analysis/tempo/LagAggregate.h"
#include "analysis/tempo/Peaks.h"
#include "tempo/TempoSignals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace BPMAnalyzer;

std::vector<float> beats(std::size_t count, std::size_t period)
{
    std::vector<float> values(count);
    for (std::size_t i = 0; i < count; i += period)
        values[i] = 1;
    return values;
}

} // namespace

TEST(AutocorrelationScores, AreOneWhereTheSeriesRepeatsItself)
{
    Pace pace = TempoSignals::freePace();
    const std::vector<float> scores = autocorrelationScores(beats(120, 11), 37, pace);
    for (std::size_t lag = 0; lag <= 37; ++lag)
        EXPECT_NEAR(scores[lag], lag > 0 && lag % 11 == 0 ? 1 : 0, 1e-6) << lag;
    EXPECT_EQ(autocorrelationScores(beats(30, 2), 30, pace), std::vector<float>(31)) << "as long as the series";
}

TEST(AutocorrelationScores, StopAfterTheLagAtHand)
{
    std::stop_source source;
    TempoSignals::CountedClock time{.step = async::seconds(0.0001)};
    Pace pace{.stop = source.get_token(), .budget = CooperativeDSPBudget(true, time.clock())};
    time.onLook = [&] {
        if (time.looks == 3) // the first is that of the budget's start, then every eighth lag
            source.request_stop();
    };
    const std::vector<float> scores = autocorrelationScores(std::vector<float>(300, 1.0F), 37, pace);
    EXPECT_FLOAT_EQ(scores[16], 1);
    EXPECT_TRUE(std::all_of(scores.begin() + 17, scores.end(), [](float score) { return score == 0; }));
}

TEST(PeakIntervalScores, GiveIntervalsToTheLagsThatDivideThem)
{
    Pace pace = TempoSignals::freePace();
    std::vector<float> x(80);
    x[10] = 1;
    x[35] = 4; // 25 frames on: a lag of 25, 12.5, 8.33 and 6.25
    const std::vector<float> scores = peakIntervalScores(x, {.minimum = 6, .maximum = 25}, pace);
    std::vector<float> expected(26); // over the largest share: all of the interval itself
    expected[25] = 1;
    expected[12] = expected[13] = 0.5F / std::sqrt(2.0F);
    expected[8] = (1 - 1 / 3.0F) / std::sqrt(3.0F);
    expected[9] = 1 / 3.0F / std::sqrt(3.0F);
    expected[6] = 0.75F / 2;
    expected[7] = 0.25F / 2;
    for (std::size_t lag = 0; lag < scores.size(); ++lag)
        EXPECT_NEAR(scores[lag], expected[lag], 1e-6) << lag;
    x[35] = 0;
    EXPECT_EQ(peakIntervalScores(x, {.minimum = 6, .maximum = 25}, pace), std::vector<float>(26)) << "no interval";
    EXPECT_EQ(peakIntervalScores({}, {.minimum = 6, .maximum = 25}, pace), std::vector<float>(26));
}

TEST(StrongestPeaks, PlateausEdgesAndTheLimit)
{
    const std::vector<float> plateau{5, 1, 1, 3, 3, 3, 1, 0, 1, 4};
    EXPECT_EQ(strongestPeaks(plateau, 0, 9), (std::vector<int>{0, 3, 9}));
    EXPECT_EQ(strongestPeaks(plateau, 1, 9), (std::vector<int>{0})) << "only the largest reaches the threshold";
    const std::vector<float> equal{2, 0, 0, 1, 0, 0, 2, 0, 0, 2};
    EXPECT_EQ(strongestPeaks(equal, 0, 2), (std::vector<int>{0, 6})) << "the earlier of equal ones";
    EXPECT_TRUE(strongestPeaks(std::vector<float>(9), 0, 9).empty());
}

TEST(LagScores, NeedALagAboveTheSmallest)
{
    Pace pace = TempoSignals::freePace();
    OnsetSection section;
    section.fill(beats(120, 11));
    EXPECT_EQ(lagScores(section, {.minimum = 9, .maximum = 37}, pace)->front().size(), 38U);
    section[HighFlux].resize(12); // limit 10
    EXPECT_EQ(lagScores(section, {.minimum = 9, .maximum = 37}, pace)->front().size(), 11U);
    EXPECT_FALSE(lagScores(section, {.minimum = 10, .maximum = 37}, pace));
}

TEST(LagAggregate, MedianAndProfile)
{
    EXPECT_EQ(median({}), 0);
    EXPECT_EQ(median({3, 1, 2}), 2);
    EXPECT_EQ(median({4, 1, 3, 2}), 2.5F);
    const std::vector<float> scores{0, 1, 2, 4, 8, 16, 32};
    EXPECT_FLOAT_EQ(profileScore(scores, 2), 2 + 0.24F * 8 + 0.12F * 32 + 0.12F * 1);
    EXPECT_FLOAT_EQ(profileScore(scores, 1), 1 + 0.24F * 2 + 0.12F * 4 + 0.12F * 1) << "half of 1 is 1";
    EXPECT_FLOAT_EQ(profileScore(scores, 5), 16 + 0.12F * 2) << "double and triple are outside";
    EXPECT_EQ(profileScore(scores, 7), 0);
    EXPECT_EQ(profileScore(scores, -1), 0);
}

TEST(BeatGridFitness, EdgesOfItsRange)
{
    Pace pace = TempoSignals::freePace();
    const std::vector<float> onsets = beats(200, 20);
    const BeatGridContext context = BeatGridContext::of(onsets).value();
    EXPECT_NEAR(beatGridFitness(context, 20, pace), 1, 1e-6);
    EXPECT_EQ(beatGridFitness(context, 1.99, pace), 0);
    EXPECT_EQ(beatGridFitness(context, 1e9, pace), 0);
    EXPECT_FALSE(BeatGridContext::of(beats(16, 2))) << "too short";
    EXPECT_FALSE(BeatGridContext::of(std::vector<float>(100))) << "silent";
}
