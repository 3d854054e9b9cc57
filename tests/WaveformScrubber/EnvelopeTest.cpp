#include "WaveformScrubber/shape/EnvelopeBuilder.h"
#include "WaveformScrubber/shape/EnvelopeCurve.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The curve by hand: level 0.88 r + 0.12 p to the power of 0.78.
float bent(double rms, double peak)
{
    return float(std::pow(0.88 * rms + 0.12 * peak, 0.78));
}

void expectNear(const std::vector<float>& values, const std::vector<float>& expected, const char* name)
{
    EXPECT_THAT(values, testing::Pointwise(testing::FloatNear(1e-6F), expected)) << name;
}

std::vector<float> noise(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> level(-1, 1);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = level(random) * level(random);
    return samples;
}

} // namespace

TEST(EnvelopeCurve, PercentilesLeaveSilenceOut)
{
    const struct {
        std::vector<float> values;
        double fraction;
        float expected;
    } cases[] = {
        {{}, 0.97, 1},           {{0, 0, 0.000001F}, 0.97, 1},
        {{0.5F}, 0.97, 0.5F},    {{0, 0, 0, 0.5F, 0.25F}, 0, 0.25F},
        {{3, 1, 2}, 0.5, 2},     {{4, 1, 3, 2}, 0.5, 3}, // 1.5 is rounded away from zero
        {{4, 1, 3, 2}, 0.49, 2}, {{5, 4, 3, 2, 1}, 1, 5},
        {{5, 4, 3, 2, 1}, 7, 5}, {{5, 4, 3, 2, 1}, -7, 1},
        {{kNaN, 2, 1}, 1, 2},
    };
    for (const auto& [values, fraction, expected] : cases)
        EXPECT_EQ(EnvelopeCurve::percentile(values, fraction), expected) << values.size() << " at " << fraction;
}

TEST(EnvelopeCurve, TheLoudPartIsOneAndLouderIsCut)
{
    // 101 equal levels: the references are the values at the indices 97 and 99 of the sorted lists.
    std::vector<float> rms;
    std::vector<float> peak;
    for (int index = 0; index <= 100; ++index) {
        rms.push_back(float(index + 1) / 200);
        peak.push_back(float(index + 1) / 100);
    }
    const std::vector<float> values = EnvelopeCurve::shaped(rms, peak);
    EXPECT_NEAR(values[0], bent(1 / 98.0, 1 / 100.0), 1e-6);
    EXPECT_NEAR(values[48], bent(49 / 98.0, 49 / 100.0), 1e-6);
    EXPECT_NEAR(values[98], bent(1, 0.99), 1e-6);
    EXPECT_EQ(values[100], 1.0F);
}

TEST(NormalizedEnvelope, BucketsAreCutByIntegerDivision)
{
    const struct {
        const char* name;
        std::vector<float> samples;
        int count;
        std::vector<float> expected;
    } cases[] = {
        {"no samples", {}, 4, {}},
        {"no buckets", {1, 2}, 0, {}},
        {"silence", {0, 0, 0, 0}, 2, {0, 0}},
        // Buckets of one, one and two samples; RMS 0.5, 1 and 0.5 with a reference of 1, peaks 0.5, 1 and sqrt(0.5).
        {"uneven", {0.5F, -1, 0, std::sqrt(0.5F)}, 3, {bent(0.5, 0.5), 1, bent(0.5, M_SQRT1_2)}},
        // Four buckets from two samples: each has one, the first sample stands twice.
        {"short", {1, -0.25F}, 4, {1, 1, bent(0.25, 0.25), bent(0.25, 0.25)}},
        {"not numbers", {1, kNaN, kInfinity, -0.5F}, 2, {1, bent(0.5, 0.5)}},
    };
    for (const auto& [name, samples, count, expected] : cases)
        expectNear(normalizedEnvelope(samples, count), expected, name);
}

TEST(NormalizedEnvelope, FewFramesStillFillEveryBucket)
{
    for (const std::size_t count : {1U, 2U, 100U, 4095U, 4096U, 4097U, 8191U}) {
        const std::vector<float> values = normalizedEnvelope(std::vector<float>(count, 0.1F), 4096);
        EXPECT_EQ(values, std::vector<float>(4096, 1.0F)) << count;
    }
}

TEST(EnvelopeBuilder, BlocksMakeNoDifference)
{
    // Among them lengths whose bucket edges fall everywhere but on the blocks' edges.
    for (const std::size_t frames : {5U, 4097U, 70000U, 100003U}) {
        const std::vector<float> samples = noise(frames, 7);
        const std::vector<float> whole = normalizedEnvelope(samples, 4096);
        for (const std::size_t blockSize : {1U, 997U, 32768U}) {
            EnvelopeBuilder builder(qint64(frames), 4096, 1);
            for (std::size_t at = 0; at < frames; at += blockSize)
                builder.add(std::span(samples).subspan(at, std::min(blockSize, frames - at)));
            expectNear(builder.envelope(), whole, "blocks");
        }
    }
}

TEST(EnvelopeBuilder, EnergiesOfChannelsAreAveragedAndTheLargestPeakCounts)
{
    EnvelopeBuilder builder(4, 2, 2);
    const std::vector<float> frames{1, 0, 1, 0, /**/ 0.5F, 0.5F, -0.5F, 0.5F};
    builder.add(frames);
    // RMS sqrt(1/2) and 1/2, peaks 1 and 1/2.
    expectNear(builder.envelope(), {1, bent(M_SQRT1_2, 0.5)}, "stereo");
}

TEST(EnvelopeBuilder, ALengthThatWasToldWronglyDoesNoHarm)
{
    EnvelopeBuilder tooShort(8, 4, 1);
    tooShort.add(std::vector<float>{1, 1, 1, 1});
    expectNear(tooShort.envelope(), {1, 1, 0, 0}, "ends early");

    EnvelopeBuilder tooLong(2, 2, 1);
    tooLong.add(std::vector<float>{1, 1, 9});
    tooLong.add(std::vector<float>{9, 9, 9});
    expectNear(tooLong.envelope(), {1, 1}, "goes on");
}
