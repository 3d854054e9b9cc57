#include "WaveformScrubber/shape/Downsampler.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using Values = std::vector<float>;

void expectNear(const Values& values, const Values& expected, const std::string& name)
{
    EXPECT_THAT(values, testing::Pointwise(testing::FloatNear(1e-6F), expected)) << name;
}

} // namespace

TEST(Resampling, PreparesAnyNumberOfValues)
{
    const struct {
        const char* name;
        Values samples;
        int count;
        UpsampleStrategy strategy;
        Values expected;
    } cases[] = {
        {"nothing wanted", {1, 2}, 0, UpsampleStrategy::Linear, {}},
        {"less than nothing wanted", {1, 2}, -3, UpsampleStrategy::Linear, {}},
        {"no samples", {}, 5, UpsampleStrategy::Linear, {}},
        {"as many", {1, -2}, 2, UpsampleStrategy::Linear, {1, 2}},
        {"halves", {3, -4, 0, 1}, 2, UpsampleStrategy::Linear, {std::sqrt(12.5F), M_SQRT1_2}},
        {"uneven", {1, 2, 3, 4, 5}, 3, UpsampleStrategy::None, {1, std::sqrt(6.5F), std::sqrt(20.5F)}},
        {"one", {3, 4, 5, 0}, 1, UpsampleStrategy::None, {std::sqrt(12.5F)}},
        {"not made up", {1, -2}, 5, UpsampleStrategy::None, {1, 2}},
        {"magnitudes first", {-1, 1}, 3, UpsampleStrategy::Linear, {1, 1, 1}},
    };
    for (const auto& [name, samples, count, strategy, expected] : cases)
        expectNear(Downsampler::prepareSamples(samples, count, strategy), expected, name);
}

TEST(Resampling, StrategiesDifferBetweenKnownValuesOnly)
{
    // Places 0, 1/4, 1/2, 3/4, 1, ... between 0, 1 and 3.
    const float quarter = float((1 - M_SQRT1_2) / 2);
    const std::pair<const char*, Values> cases[] = {
        {"smooth", {0, 0.15625F, 0.5F, 0.84375F, 1, 1.3125F, 2, 2.6875F, 3}},
        {"cosine", {0, quarter, 0.5F, 1 - quarter, 1, 1 + 2 * quarter, 2, 3 - 2 * quarter, 3}},
        {"linear", {0, 0.25F, 0.5F, 0.75F, 1, 1.5F, 2, 2.5F, 3}},
        {"hold", {0, 0, 0, 0, 1, 1, 1, 1, 3}},
        {"none", {0, 1, 3}},
    };
    int order = 0;
    for (const auto& [name, expected] : cases) {
        const auto strategy = upsampleStrategyFromRawValue(QLatin1StringView(name));
        ASSERT_TRUE(strategy) << name;
        EXPECT_EQ(int(*strategy), order++);
        EXPECT_EQ(rawValue(*strategy), QLatin1StringView(name));
        expectNear(Upsampler::upsample(Values{0, 1, 3}, 9, *strategy), expected, name);
    }
    EXPECT_FALSE(upsampleStrategyFromRawValue(QLatin1StringView("Linear")));
}

TEST(Resampling, TheLastValueIsReachedExactly)
{
    for (int count = 4; count < 3000; count += 7) {
        const Values values = Upsampler::upsample(Values{0.25F, 0.5F, 0.125F}, count, UpsampleStrategy::Hold);
        EXPECT_EQ(values.back(), 0.125F) << count;
        EXPECT_EQ(values[values.size() - 2], 0.5F) << count;
    }
    EXPECT_EQ(Upsampler::upsample(Values{0.5F}, 3, UpsampleStrategy::Smooth), Values(3, 0.5F));
}
