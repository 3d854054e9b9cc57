#include "analysis/key/AnalysisRanges.h"
#include "analysis/key/MusicalKeyAnalyzer.h"
#include "async/Cancelled.h"
#include "key/support/DefinedFeatures.h"
#include "key/support/TestMusic.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using MusicalKeyAnalyzer::AnalysisRange;
using MusicalKeyAnalyzer::Error;
using Samples = std::vector<float>;

constexpr int kRate = TestMusic::kSampleRate;

int codeOf(const Samples& samples, int sampleRate = kRate)
{
    try {
        MusicalKeyAnalyzer::features(samples, sampleRate, false, {});
        return 0;
    } catch (const Error& error) {
        return error.code();
    }
}

/// Samples of music at any rate, with noise, so that there are peaks of all kinds.
Samples noisyMusic(std::size_t count)
{
    Samples samples = TestMusic::cadence(3, true, double(count) / kRate + 1, 20);
    samples.resize(count);
    std::minstd_rand random(11);
    std::uniform_real_distribution<float> noise(-0.05F, 0.05F);
    for (float& sample : samples)
        sample += noise(random);
    return samples;
}

void expectNear(const std::array<double, 12>& heard, const std::array<double, 12>& defined)
{
    for (std::size_t k = 0; k < 12; ++k)
        EXPECT_NEAR(heard[k], defined[k], 1e-5) << k;
}

} // namespace

TEST(KeyRanges, AreEightSpreadOverTheFile)
{
    using Ranges = std::vector<AnalysisRange>;
    const auto ranges = [](std::size_t count, int rate) { return MusicalKeyAnalyzer::analysisRanges(count, rate); };
    EXPECT_EQ(ranges(264600, 22050), (Ranges{{0, 264600}})) << "12 s are one range";
    EXPECT_EQ(ranges(264601, 22050).size(), 8U);
    EXPECT_EQ(ranges(1264600, 22050), (Ranges{{40000, 264600},
                                              {170000, 264600},
                                              {300000, 264600},
                                              {430000, 264600},
                                              {570000, 264600},
                                              {700000, 264600},
                                              {830000, 264600},
                                              {960000, 264600}}));
    EXPECT_EQ(ranges(8192, 100), (Ranges{{0, 8192}})) << "12 s would be shorter than a frame";
    EXPECT_EQ(ranges(8292, 100).back(), (AnalysisRange{96, 8192}));
    EXPECT_EQ(ranges(100000, std::numeric_limits<int>::max()), (Ranges{{0, 100000}}));
    EXPECT_EQ(ranges(264601, 22050).back().start, 1U) << "rounded, and within the file";
}

TEST(KeyFeatures, AreWhatTheStepsDefine)
{
    // The lower rate brings the top of the spectrum down to the highest note, and the range is not full of frames.
    for (const int rate : {kRate, 8000}) {
        SCOPED_TRACE(rate);
        const Samples samples = noisyMusic(8192 * 2 + 4096 + 1234);
        const MusicalKeyFeatureVector features = MusicalKeyAnalyzer::features(samples, rate, false, {});
        ASSERT_EQ(features.sections.size(), 1U);
        const auto& heard = features.sections[0];
        const auto defined = definedSection(samples, rate);
        expectNear(heard.chroma, defined.chroma);
        expectNear(heard.bassChroma, defined.bassChroma);
        EXPECT_NEAR(heard.tuningCents, defined.tuningCents, 1e-9);
        EXPECT_NEAR(heard.tonalQuality, defined.tonalQuality, 1e-5);
    }
}

TEST(KeyFeatures, WantEnoughSound)
{
    const Samples tone = TestMusic::tone(440, 2);
    const auto first = [&](std::size_t count) { return Samples(tone.begin(), tone.begin() + std::ptrdiff_t(count)); };
    EXPECT_EQ(codeOf({}), 1);
    EXPECT_EQ(codeOf(first(8191)), 1);
    EXPECT_EQ(codeOf(tone, 0), 1);
    EXPECT_EQ(codeOf(tone, -22050), 1);
    EXPECT_EQ(codeOf(first(8192)), 2) << "one frame";
    EXPECT_EQ(codeOf(first(16383)), 2) << "two frames";
    EXPECT_EQ(codeOf(first(16384)), 0) << "three frames";
    EXPECT_EQ(codeOf(Samples(100000)), 2) << "silence";
    EXPECT_EQ(codeOf(tone, 40), 2) << "all notes are beyond what the rate can hold";
    EXPECT_EQ(codeOf(tone, std::numeric_limits<int>::max()), 2) << "all notes are below the first bin";
}

TEST(KeyFeatures, QuietFramesAreSkipped)
{
    Samples samples = TestMusic::tone(440, 3);
    const auto scaledTo = [&](double rms) {
        Samples scaled = samples;
        for (float& sample : scaled) // a sine at 0.5 has an RMS of 0.3536, which the window keeps
            sample *= float(rms / (0.5 / std::sqrt(2.0)));
        return scaled;
    };
    EXPECT_EQ(codeOf(scaledTo(7.9e-5)), 2);
    EXPECT_EQ(codeOf(scaledTo(8.1e-5)), 0);
}

TEST(KeyFeatures, SilentSectionsAreLeftOut)
{
    Samples samples = TestMusic::tone(440, 60);
    std::fill(samples.begin(), samples.begin() + 30 * kRate, 0.0F);
    const MusicalKeyFeatureVector features = MusicalKeyAnalyzer::features(samples, kRate, false, {});
    EXPECT_EQ(features.sections.size(), 5U) << "the first three end before the sound begins";
    for (const auto& section : features.sections)
        EXPECT_EQ(std::ranges::max_element(section.chroma) - section.chroma.begin(), 9);
}

TEST(KeyFeatures, LowNotesAloneAreBass)
{
    const auto bassOf = [](double hertz) {
        const auto features = MusicalKeyAnalyzer::features(TestMusic::tone(hertz, 2), kRate, false, {});
        return features.sections.at(0).bassChroma;
    };
    EXPECT_GT(bassOf(110)[9], 0.8);
    EXPECT_THAT(bassOf(1760), testing::Each(testing::Lt(0.5))) << "leakage at most";
}

TEST(KeyFeatures, NumbersThatAreNoneDoNoHarm)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    const float largest = std::numeric_limits<float>::max();
    for (const float value : {nan, infinity, -infinity, largest, -largest, 1e19F, 1e15F}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(codeOf(Samples(30000, value)) % 2, 0) << "a constant, or nothing at all";
        Samples samples = TestMusic::cadence(0, false, 20);
        samples[50000] = value;
        samples[50001] = -value;
        const MusicalKeyFeatureVector features = MusicalKeyAnalyzer::features(samples, kRate, false, {});
        for (const auto& section : features.sections) {
            for (const double number : section.chroma)
                EXPECT_TRUE(std::isfinite(number));
            EXPECT_TRUE(std::isfinite(section.tonalQuality));
        }
        EXPECT_EQ(MusicalKeyAnalyzer::estimate(features).key, (MusicalKey{0, MusicalKeyMode::Major}));
    }
}

TEST(KeyFeatures, GiveWayOnEveryTwelfthFrame)
{
    std::vector<async::Duration> sleeps;
    const WorkerClock clock{.now = [] { return async::Duration(0); },
                            .wait = [&](async::Duration duration, int) { sleeps.push_back(duration); }};
    const auto samples = [](std::size_t frames) { return Samples(8192 + 4096 * (frames - 1), 0.1F); };
    const struct {
        std::size_t frames;
        std::size_t sleeps;
    } cases[] = {{12, 1}, {13, 2}, {24, 2}, {25, 3}};
    for (const auto& entry : cases) {
        sleeps.clear();
        EXPECT_NO_THROW(try {
            MusicalKeyAnalyzer::features(samples(entry.frames), kRate, true, {}, clock);
        } catch (const Error&){});
        EXPECT_THAT(sleeps, testing::Each(std::chrono::milliseconds(1)));
        EXPECT_EQ(sleeps.size(), entry.sleeps) << entry.frames;
    }
    sleeps.clear();
    MusicalKeyAnalyzer::features(TestMusic::tone(440, 13), kRate, false, {}, clock);
    EXPECT_TRUE(sleeps.empty());
}

TEST(KeyFeatures, StopWithinTwelveFrames)
{
    const Samples samples = TestMusic::tone(440, 30);
    for (const int stopAt : {1, 2, 6, 7, 30}) { // six times per range
        std::stop_source source;
        int sleeps = 0;
        const WorkerClock clock{.now = [] { return async::Duration(0); },
                                .wait =
                                    [&](async::Duration, int) {
                                        if (++sleeps == stopAt)
                                            source.request_stop();
                                    }};
        EXPECT_THROW(MusicalKeyAnalyzer::features(samples, kRate, true, source.get_token(), clock), async::Cancelled);
        EXPECT_EQ(sleeps, stopAt);
    }
}
