#include "analysis/tempo/TempoDecision.h"

#include "analysis/tempo/FoldedTempo.h"
#include "analysis/tempo/PeriodConsensus.h"
#include "support/Stopped.h"
#include "tempo/TempoSignals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace BPMAnalyzer;

/// A ranking of lags with scores, which are also their periodicity.
std::vector<RankedCandidate> ranking(std::initializer_list<std::pair<int, float>> lags)
{
    std::vector<RankedCandidate> result;
    for (const auto& [lag, score] : lags)
        result.push_back({.candidate = {.lag = lag, .periodicity = score, .agreement = 0.5F}, .score = score});
    return result;
}

std::vector<LagCandidate> periodicities(int firstLag, std::initializer_list<float> values)
{
    std::vector<LagCandidate> result;
    for (const float value : values)
        result.push_back({.lag = firstLag++, .periodicity = value});
    return result;
}

int selectedLag(const std::vector<RankedCandidate>& candidates)
{
    return selectCandidate(candidates, {}).candidate.lag;
}

/// Peaks every \p period frames, at whole frames.
std::vector<float> peaksEvery(double period, std::size_t count)
{
    std::vector<float> values(count, 0.01F);
    for (int i = 0; std::size_t(std::lround(i * period)) < count; ++i)
        values[std::size_t(std::lround(i * period))] = 1;
    return values;
}

double refined(double period, const std::vector<std::vector<float>>& series)
{
    const std::vector<std::span<const float>> spans(series.begin(), series.end());
    return consensusRefinedPeriod(period, spans, TempoSignals::freePace());
}

} // namespace

TEST(FoldedTempo, IsAWholeNumberUpTo140)
{
    const std::pair<double, double> cases[] = {{9, 72}, {18, 72}, {19, 136}, {37, 70}, {18.39, 70}, {18.40, 140}};
    for (const auto& [lag, tempo] : cases)
        EXPECT_EQ(foldedTempo(lag), tempo) << lag;
}

TEST(AmbiguityRule, Table)
{
    const struct {
        double tempo;
        double other;
        float score;
        double tolerance;
    } rows[] = {{70, 105, 0.70F, 5},    {92, 138, 0.70F, 5},    {93, 0, 0, 0},          {107, 0, 0, 0},
                {108, 81, 0.72F, 3},    {118, 88.5, 0.72F, 3},  {119, 89.25, 0.85F, 5}, {128, 96, 0.85F, 5},
                {129, 96.75, 0.72F, 3}, {131, 98.25, 0.72F, 3}, {132, 99, 0.64F, 5},    {140, 105, 0.64F, 5}};
    for (const auto& row : rows) {
        const std::optional<AmbiguityRule> rule = ambiguityRule(row.tempo);
        EXPECT_EQ(rule.has_value(), row.other > 0) << row.tempo;
        if (!rule)
            continue;
        EXPECT_EQ(rule->otherTempo, row.other) << row.tempo;
        EXPECT_EQ(rule->smallestRelativeScore, row.score) << row.tempo;
        EXPECT_EQ(rule->tolerance, row.tolerance) << row.tempo;
    }
}

TEST(SelectCandidate, TakesTheFirstThatIsNearAndStrongEnough)
{
    // Lag 19 is 136 BPM, whose other tempo is 102: lags 25 (103) and 26 (99) are near it, 24 (108) is not.
    EXPECT_EQ(selectedLag(ranking({{19, 1.0F}, {24, 0.9F}, {26, 0.7F}, {25, 0.65F}})), 26);
    EXPECT_EQ(selectedLag(ranking({{19, 1.0F}, {25, 0.63F}, {26, 0.6F}})), 19) << "too weak";
    EXPECT_EQ(selectedLag(ranking({{19, 1.0F}, {24, 0.9F}})), 19);
    EXPECT_EQ(selectedLag(ranking({{26, 1.0F}, {19, 0.9F}, {34, 0.9F}})), 26) << "no rule for 99";
    EXPECT_EQ(selectedLag(ranking({{9, 0.0F}, {24, 0.0F}})), 9) << "nothing is divided by zero";
}

TEST(RefinedPeakLag, TopOfTheParabola)
{
    const std::vector<LagCandidate> peak = periodicities(9, {0.2F, 0.5F, 0.4F, 0.4F, 0.4F, 0.9F});
    EXPECT_NEAR(refinedPeakLag(10, peak), 10.25, 1e-6);
    EXPECT_EQ(refinedPeakLag(9, peak), 9) << "first of the range";
    EXPECT_EQ(refinedPeakLag(14, peak), 14) << "last of the range";
    EXPECT_EQ(refinedPeakLag(8, peak), 8);
    EXPECT_EQ(refinedPeakLag(12, peak), 12) << "flat";
    EXPECT_EQ(refinedPeakLag(13, peak), 12.5) << "at most half a frame";
    EXPECT_EQ(refinedPeakLag(10, {}), 10);
}

TEST(LiftedTempo, SlowOnesBecome140)
{
    // Lag 19 is 136 BPM, lag 20 is 129.
    const struct {
        double bpm;
        int lag; ///< of the second candidate
        float score;
        double lifted;
    } rows[] = {{70, 19, 0.60F, 140}, {70, 19, 0.59F, 70}, {71, 19, 0.74F, 71}, {72, 19, 0.60F, 72},
                {72, 19, 0.75F, 140}, {73, 19, 0.99F, 73}, {70, 20, 0.99F, 70}};
    for (const auto& row : rows)
        EXPECT_EQ(liftedTempo(row.bpm, ranking({{36, 1.0F}, {row.lag, row.score}})), row.lifted)
            << row.bpm << ' ' << row.score;
}

TEST(WeightedMedian, FirstToReachHalfOfAllWeight)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(weightedMedian({}));
    EXPECT_FALSE(weightedMedian({{kInfinity, 1}, {std::nan(""), 1}, {3, 0}, {4, -1}, {5, std::nan("")}}));
    EXPECT_EQ(weightedMedian({{3, 1}, {1, 1}, {2, 2}}), 2);
    EXPECT_EQ(weightedMedian({{1, 1}, {2, 1}}), 1) << "exactly half";
    EXPECT_EQ(weightedMedian({{1, 1}, {2, 1.1}}), 2);
}

TEST(ConsensusRefinedPeriod, MovesTowardsWhatTheSeriesSay)
{
    const std::vector<float> beats = peaksEvery(20.5, 513);
    EXPECT_NEAR(refined(20, {beats, beats, beats}), 0.2 * 20 + 0.8 * 20.5, 0.01);
    EXPECT_EQ(refined(20, {beats, beats}), 20) << "two series are no consensus";
    EXPECT_EQ(refined(20, {beats, beats, std::vector<float>(513)}), 20) << "silence says nothing";
    EXPECT_EQ(refined(5.9, {beats, beats, beats}), 5.9) << "too short to refine";
    EXPECT_EQ(refined(1e300, {beats, beats, beats}), 1e300);
    EXPECT_TRUE(std::isnan(refined(std::nan(""), {beats, beats, beats})));
    const std::vector<float> away = peaksEvery(125, 1300); // six beats of 20.83
    EXPECT_EQ(refined(20, {away, away, away}), 20) << "more than 0.75 away";
    const std::span<const float> series[] = {beats, beats, beats};
    const Pace pace{.stop = stoppedToken(), .budget = CooperativeDSPBudget(false, WorkerClock::system())};
    EXPECT_EQ(consensusRefinedPeriod(20, series, pace), 20);
}
