#include "analysis/tempo/BPMAnalyzer.h"

#include "analysis/decoding/DecoderError.h"
#include "analysis/tempo/AnalysisSections.h"
#include "platform/Localization.h"
#include "support/DecoderFixture.h"
#include "support/Stopped.h"
#include "support/Thrown.h"
#include "tempo/TempoSignals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace BPMAnalyzer;

Estimate tempoOf(const std::vector<float>& samples)
{
    return estimateDetailed(samples, 70, 200, false, {});
}

/// The code that an estimation ends with; 0 if it gives a tempo.
int codeOf(const std::vector<float>& samples, double minimum = 70, double maximum = 200)
{
    const auto error = thrown<Error>([&] { estimateDetailed(samples, minimum, maximum, false, {}); });
    return error ? error->code() : 0;
}

void expectSound(const Estimate& estimate)
{
    EXPECT_EQ(estimate.bpm, std::round(estimate.bpm));
    EXPECT_GE(estimate.bpm, 70);
    EXPECT_LE(estimate.bpm, 140);
    EXPECT_GE(estimate.confidence, 0);
    EXPECT_LE(estimate.confidence, 1);
    EXPECT_LE(estimate.alternatives.size(), 8);
}

using BPMAnalyzerFileTest = DecoderFixture;

} // namespace

TEST(BPMAnalyzer, CountsClicks)
{
    for (const double bpm : {74.0, 80.0, 90.0, 100.0, 107.0, 120.0, 128.0, 136.0}) {
        const Estimate estimate = tempoOf(TempoSignals::clicks(bpm, 60));
        EXPECT_NEAR(estimate.bpm, bpm, 1) << bpm;
        expectSound(estimate);
    }
    EXPECT_EQ(tempoOf(TempoSignals::clicks(174, 60)).bpm, 87) << "folded";
    EXPECT_EQ(tempoOf(TempoSignals::clicks(120, 20)).bpm, 120) << "one section";
}

TEST(BPMAnalyzer, SilenceIs72)
{
    const Estimate estimate = tempoOf(std::vector<float>(kSampleRate * 60));
    EXPECT_EQ(estimate.bpm, 72);
    EXPECT_NEAR(estimate.confidence, 0.52, 1e-6);
}

TEST(BPMAnalyzer, WhatRepeatsItselfHasNoOnsets)
{
    // Every frame is the one before: nothing but the first frames differs, and no lag is better than another.
    const Estimate estimate = tempoOf(std::vector<float>(kSampleRate * 60, 0.5F));
    EXPECT_EQ(estimate.bpm, 70);
    EXPECT_NEAR(estimate.confidence, 0.34, 0.005);
}

TEST(BPMAnalyzer, WhateverTheSamplesAreItEndsWithATempo)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kLargest = std::numeric_limits<float>::max();
    constexpr float kTiny = std::numeric_limits<float>::denorm_min();
    const std::vector<float> noise = TempoSignals::noise(kSampleRate * 37);
    expectSound(tempoOf(noise));
    for (const float bad : {std::nanf(""), kInfinity, -kInfinity, kLargest, -kLargest, 1e9F, 1e20F, kTiny, 1e-30F}) {
        std::vector<float> samples = noise;
        for (std::size_t i = 0; i < samples.size(); i += 5000)
            samples[i] = bad;
        expectSound(tempoOf(samples));
        expectSound(tempoOf(std::vector<float>(kSampleRate * 13, bad)));
        std::vector<float> scaled = noise; // for the huge ones all are infinite
        for (float& sample : scaled)
            sample *= bad;
        expectSound(tempoOf(scaled));
    }
}

TEST(BPMAnalyzer, FailsWithItsCodes)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const std::vector<float> minute = TempoSignals::clicks(120, 60);
    const std::pair<double, double> badRanges[] = {{0, 200}, {-1, 200}, {200, 200}, {200, 70}, {kNaN, 200}, {70, kNaN}};
    for (const auto& [minimum, maximum] : badRanges)
        EXPECT_EQ(codeOf(minute, minimum, maximum), 1) << minimum << ' ' << maximum;
    for (const std::size_t count : {0, 1, 1024, 8191, 8192, 26623})
        EXPECT_EQ(codeOf(TempoSignals::noise(count)), 2) << count;
    EXPECT_EQ(codeOf(TempoSignals::noise(26624)), 0) << "101 frames";
    EXPECT_EQ(codeOf(minute, 285, 286), 3) << "no lag lies above the smallest";
    EXPECT_EQ(codeOf(minute, 1e-300, 1e300), 0) << "the range is cut to what a section holds";
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    EXPECT_EQ(Error(Error::Case::NoSection).message(), QStringLiteral("Недостаточно аудиоданных для определения BPM."));
    EXPECT_TRUE(Error(Error::Case::EmptyRanking).message().isEmpty());
}

TEST(BPMAnalyzer, SectionsOfATrack)
{
    constexpr std::size_t kLimit = 36 * 11025;
    EXPECT_EQ(sectionRanges(kLimit), (std::vector<SectionRange>{{0, kLimit}}));
    const std::vector<SectionRange> ranges = sectionRanges(kLimit + 1);
    ASSERT_EQ(ranges.size(), 8U);
    EXPECT_EQ(ranges[0], (SectionRange{13230, 132300}));  // 0.05 of 24 s and one sample
    EXPECT_EQ(ranges[4], (SectionRange{150823, 132300})); // 0.57 of them
    EXPECT_EQ(ranges[7], (SectionRange{251371, 132300}));
    EXPECT_LE(ranges[7].start + ranges[7].length, kLimit + 1);
    Pace pace = TempoSignals::freePace();
    EXPECT_EQ(analysisSections(TempoSignals::noise(kLimit), pace).size(), 1U);
    EXPECT_EQ(analysisSections(TempoSignals::noise(kLimit + 1), pace).size(), 8U);
}

TEST(BPMAnalyzer, WhereverItIsStoppedItEndsAsCancelled)
{
    const std::vector<float> samples = TempoSignals::clicks(120, 37);
    TempoSignals::CountedClock whole{.step = async::seconds(0.0001)};
    const Estimate expected = estimateDetailed(samples, 70, 200, true, {}, whole.clock());
    EXPECT_EQ(expected, tempoOf(samples)) << "rests change nothing";
    ASSERT_GT(whole.looks, 1000);
    for (int look = 1; look <= whole.looks; look += whole.looks / 23) {
        std::stop_source source;
        TempoSignals::CountedClock time{.step = async::seconds(0.0001)};
        time.onLook = [&] {
            if (time.looks == look)
                source.request_stop();
        };
        EXPECT_THROW(estimateDetailed(samples, 70, 200, true, source.get_token(), time.clock()), async::Cancelled)
            << look;
        EXPECT_LE(time.looks - look, 1) << look << ": it may end a rest, but not work on";
    }
}

TEST(CooperativeDSPBudget, RestsOneMillisecondAfterThree)
{
    const struct {
        bool enabled;
        int index;
        int interval;
        double worked; ///< seconds
        std::size_t rests;
    } rows[] = {{true, 16, 16, 0.003, 1}, {true, 0, 16, 0.003, 1}, {true, 17, 16, 0.003, 0}, {true, 16, 16, 0.0029, 0},
                {true, 16, 0, 1, 0},      {true, 16, -1, 1, 0},    {false, 16, 16, 1, 0}};
    for (const auto& row : rows) {
        TempoSignals::CountedClock time;
        CooperativeDSPBudget budget(row.enabled, time.clock());
        time.now += async::seconds(row.worked);
        budget.checkpoint(row.index, row.interval);
        EXPECT_EQ(time.sleeps, std::vector(row.rests, async::seconds(0.001))) << row.index << ' ' << row.worked;
        budget.checkpoint(row.index, row.interval);
        EXPECT_EQ(time.sleeps.size(), row.rests) << "the next three begin after the rest";
    }
}

TEST_F(BPMAnalyzerFileTest, ReadsAFile)
{
    const QUrl url = encoded(QStringLiteral("beat.mp3"),
                             QStringLiteral("aevalsrc='(random(0)-0.5)*exp(-40*mod(t,0.5))':d=40:s=44100"));
    const Estimate estimate = estimateDetailed(url, 70, 200, false, std::nullopt, {});
    EXPECT_EQ(estimate.bpm, 120);
    EXPECT_THROW(estimateDetailed(QUrl::fromLocalFile(path(QStringLiteral("missing.mp3"))), 70, 200, false, true, {}),
                 AudioPCMDecoder::DecoderError);
    EXPECT_THROW(estimateDetailed(url, 70, 200, true, false, stoppedToken()), async::Cancelled);
    EXPECT_THROW(estimateDetailed(url, 70, 70, false, {}, stoppedToken()), Error) << "the range comes first";
}
