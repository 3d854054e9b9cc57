#include "analysis/tempo/LagRanking.h"

#include "analysis/tempo/BPMError.h"

#include "tempo/TempoSignals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace BPMAnalyzer;

constexpr std::size_t kLimit = 6; // scores of the made-up sections: lags 0 to 5

/// The scores of a section that are 0 but for those named.
SectionScores section(std::initializer_list<std::tuple<std::size_t, std::size_t, float>> scores)
{
    SectionScores result;
    result.fill(std::vector<float>(kLimit));
    for (const auto& [series, lag, score] : scores)
        result[series][lag] = score;
    return result;
}

const LagCandidate& candidate(const LagAggregate& aggregate, int lag)
{
    return *std::ranges::find(aggregate.candidates, lag, &LagCandidate::lag);
}

float scoreOf(const std::vector<RankedCandidate>& ranking, int lag)
{
    return std::ranges::find(ranking, lag, [](const RankedCandidate& each) { return each.candidate.lag; })->score;
}

/// Candidates from lag 10 to 40 with an agreement of 0.8 and the named periodicities; lag 20 scores in all series.
LagAggregate aggregate(std::initializer_list<std::pair<int, float>> periodicities)
{
    LagAggregate result;
    for (int lag = 10; lag <= 40; ++lag)
        result.candidates.push_back({.lag = lag, .periodicity = 0, .agreement = 0.8F});
    for (const auto& [lag, periodicity] : periodicities)
        result.candidates[std::size_t(lag - 10)].periodicity = periodicity;
    for (std::size_t k = 0; k < kSeriesCount; ++k) {
        result.series[k].assign(41, 0);
        result.series[k][20] = 0.1F * float(k + 1);
    }
    result.votes = {20, 20, 10, 37, 28}; // 129, 129, 129 (folded), 70 and 92 BPM
    return result;
}

} // namespace

TEST(AggregateScores, WeighSeriesAndSections)
{
    // Lag 2 is the same in all sections, but differs by series; lag 3 of one series differs by section.
    const auto sectionWith = [](float third) {
        return section({{0, 2, 1.0F}, {1, 2, 0.5F}, {2, 2, 0.25F}, {4, 2, 0.2F}, {0, 3, third}, {1, 4, 0.25F}});
    };
    const SectionScores sections[] = {sectionWith(0.1F), sectionWith(0.4F), sectionWith(1.0F)};
    const LagAggregate result = aggregateScores(sections, 2);
    ASSERT_EQ(result.candidates.size(), 4U);
    EXPECT_EQ(result.candidates.front().lag, 2);
    EXPECT_NEAR(candidate(result, 2).periodicity, 0.30 + 0.26 * 0.5 + 0.10 * 0.25 + 0.21 * 0.2, 1e-6);
    EXPECT_NEAR(candidate(result, 2).agreement, 1, 1e-6);
    // 0.03, 0.12 and 0.30: median 0.12, mean 0.15, deviation 0.11225.
    EXPECT_NEAR(candidate(result, 3).periodicity, 0.72 * 0.12 + 0.28 * 0.15, 1e-6);
    EXPECT_NEAR(candidate(result, 3).agreement, std::exp(-4.5 * 0.1122497), 1e-5);
    EXPECT_NEAR(result.series[0][3], 0.7 * 0.4 + 0.3 * 0.5, 1e-6) << "the largest of the series is 1";
    EXPECT_NEAR(result.series[1][4], 0.5, 1e-6) << "each series by its own largest";
    EXPECT_EQ(result.votes[3], 2) << "a silent series votes for the shortest lag";
    EXPECT_EQ(result.votes[0], 2);
    EXPECT_THROW(aggregateScores(sections, 5), Error);
}

TEST(ProfileScore, AddsDoubleTripleAndHalf)
{
    const std::vector<float> scores{0.5F, 1, 0.1F, 0.2F, 0.3F, 0, 0.7F, 0, 0, 0};
    EXPECT_NEAR(profileScore(scores, 2), 0.1 + 0.24 * 0.3 + 0.12 * 0.7 + 0.12 * 1, 1e-6);
    EXPECT_NEAR(profileScore(scores, 3), 0.2 + 0.24 * 0.7 + 0.12 * 0 + 0.12 * 1, 1e-6);
    EXPECT_NEAR(profileScore(scores, 6), 0.7 + 0.12 * 0.2, 1e-6) << "beyond the list is nothing";
    EXPECT_NEAR(profileScore(scores, 1), 1 + 0.24 * 0.1 + 0.12 * 0.2 + 0.12 * 1, 1e-6) << "the half of 1 is 1";
    EXPECT_EQ(profileScore(scores, 10), 0);
}

TEST(RankCandidates, AddsWhatSpeaksForALag)
{
    Pace pace = TempoSignals::freePace();
    const LagAggregate lags = aggregate({{10, 0.2F}, {18, 0.15F}, {20, 0.5F}, {40, 0.3F}});
    const std::vector<RankedCandidate> ranking = rankCandidates(lags, {}, pace);
    ASSERT_EQ(ranking.size(), 31U);
    EXPECT_EQ(ranking.front().candidate.lag, 20);
    // Periodicity, its double and half, sharpness against lag 18, agreement, three of five votes, the middle profile.
    EXPECT_NEAR(scoreOf(ranking, 20), 0.5 + 0.24 * 0.3 + 0.12 * 0.2 + 0.16 * 0.35 + 0.12 * 0.8 + 0.12 + 0.16 * 0.3,
                1e-6);
    EXPECT_NEAR(scoreOf(ranking, 13), 0.12 * 0.3 + 0.12 * 0.8, 1e-6) << "triple, give or take one";
    EXPECT_NEAR(scoreOf(ranking, 29), 0.12 * 0.8 + 0.2 / 5, 1e-6) << "a vote 3 BPM away counts";
    const auto place = [&](int lag) {
        return std::ranges::find(ranking, lag, [](const RankedCandidate& each) { return each.candidate.lag; });
    };
    EXPECT_EQ(scoreOf(ranking, 31), scoreOf(ranking, 32));
    EXPECT_LT(place(31), place(32)) << "of equal ones the shorter lag is first";
}

TEST(RankCandidates, AGridThatFitsSpeaksForALag)
{
    Pace pace = TempoSignals::freePace();
    std::vector<float> beats(513, 0.01F);
    for (std::size_t i = 0; i < beats.size(); i += 20)
        beats[i] = 1;
    OnsetSection onsets;
    onsets.fill(beats);
    const SectionGrid fitting = gridOf(onsets);
    const float fitness = beatGridFitness(*fitting[0], 20, pace);
    ASSERT_GT(fitness, 0.5F);
    const LagAggregate lags = aggregate({{20, 0.5F}});
    const float without = scoreOf(rankCandidates(lags, {}, pace), 20);
    const SectionGrid grids[] = {fitting, SectionGrid(), fitting};
    const std::vector<RankedCandidate> ranking = rankCandidates(lags, grids, pace);
    EXPECT_NEAR(ranking.front().tracking, fitness, 1e-5) << "the middle of the sections";
    EXPECT_NEAR(ranking.front().score, without + 0.25 * fitness, 1e-5);
    SectionGrid partly; // low band and high band alone
    partly[1] = fitting[1];
    partly[3] = fitting[3];
    const SectionGrid one[] = {partly};
    EXPECT_NEAR(rankCandidates(lags, one, pace).front().tracking, (0.26 + 0.13) * fitness, 1e-5);
}
