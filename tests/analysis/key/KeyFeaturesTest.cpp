#include "analysis/key/AnalysisRanges.h"
#include "analysis/key/MusicalKeyAnalyzer.h"
#include "async/Cancelled.h"
#include "key/support/TestMusic.h"
#include "support/Thrown.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace {

using MusicalKeyAnalyzer::AnalysisRange;
using MusicalKeyAnalyzer::Error;
using Samples = std::vector<float>;

constexpr int kRate = TestMusic::kSampleRate;

int codeOf(const Samples& samples, int sampleRate = kRate)
{
    const auto error = thrown<Error>([&] { MusicalKeyAnalyzer::features(samples, sampleRate, false, {}); });
    return error ? error->code() : 0;
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
    const std::pair<std::size_t, std::size_t> cases[] = {{12, 1}, {13, 2}, {24, 2}, {25, 3}};
    for (const auto& [frames, rests] : cases) {
        sleeps.clear();
        thrown<Error>([&] { MusicalKeyAnalyzer::features(samples(frames), kRate, true, {}, clock); });
        EXPECT_THAT(sleeps, testing::Each(std::chrono::milliseconds(1)));
        EXPECT_EQ(sleeps.size(), rests) << frames;
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
