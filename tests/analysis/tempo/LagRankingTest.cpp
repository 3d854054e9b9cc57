#include "analysis/tempo/LagRanking.h"

#include "analysis/tempo/BPMError.h"

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
