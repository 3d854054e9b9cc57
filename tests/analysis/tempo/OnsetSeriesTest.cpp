#include "analysis/tempo/OnsetSeries.h"

#include "analysis/tempo/FastLog1p.h"
#include "analysis/tempo/MelMap.h"
#include "analysis/tempo/NormalizedOnset.h"
#include "tempo/TempoSignals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

namespace {

using namespace BPMAnalyzer;
using std::numbers::pi;

constexpr int kBins = kFrameSize / 2;

/// The spectrum of a frame by the sum that defines it.
std::vector<std::complex<double>> plainSpectrum(const std::vector<double>& frame)
{
    static const std::vector<std::complex<double>> kTurns = [] {
        std::vector<std::complex<double>> turns;
        for (int n = 0; n < kFrameSize; ++n)
            turns.push_back(std::polar(1.0, -2 * pi * n / kFrameSize));
        return turns;
    }();
    std::vector<std::complex<double>> spectrum(kBins);
    for (std::size_t bin = 0; bin < kBins; ++bin) {
        for (std::size_t n = 0; n < frame.size(); ++n)
            spectrum[bin] += frame[n] * kTurns[bin * n % kFrameSize];
    }
    return spectrum;
}

/// The onset values as they are defined: with angles and cosines, in double precision.
class PlainOnsets {
public:
    /// Appends the values of one frame.
    void measure(std::span<const float> samples)
    {
        std::vector<double> frame(kFrameSize);
        double energy = 0;
        for (std::size_t n = 0; n < kFrameSize; ++n) {
            frame[n] = samples[n] * std::sqrt(2.0 / 3) * (1 - std::cos(2 * pi * double(n) / kFrameSize));
            energy += frame[n] * frame[n];
        }
        const double level = std::log1p(48 * std::sqrt(energy / kFrameSize));
        values[EnergyFlux].push_back(std::max(0.0, level - std::exchange(m_level, level)));

        double low = 0;
        double high = 0;
        double complex = 0;
        std::vector<double> mel(24);
        const auto spectrum = plainSpectrum(frame);
        for (int bin = 3; bin <= 511; ++bin) {
            const double amplitude = std::abs(spectrum[bin]) / kFrameSize;
            const double logarithm = std::log1p(32 * amplitude);
            const double increase = std::max(0.0, logarithm - std::exchange(m_logarithms[bin], logarithm));
            low += bin <= 20 ? increase : 0;
            high += bin > 186 ? increase : 0;
            const double phase = amplitude > 0 ? std::atan2(spectrum[bin].imag(), spectrum[bin].real()) : 0;
            const double predicted = 2 * m_phases[bin] - m_earlierPhases[bin];
            const double dx = amplitude * std::cos(phase) - m_amplitudes[bin] * std::cos(predicted);
            const double dy = amplitude * std::sin(phase) - m_amplitudes[bin] * std::sin(predicted);
            complex += std::log1p(48 * std::hypot(dx, dy));
            m_earlierPhases[bin] = std::exchange(m_phases[bin], phase);
            m_amplitudes[bin] = amplitude;
            if (m_bandOfBin[bin] >= 0)
                mel[m_bandOfBin[bin]] += amplitude;
        }
        values[LowBand].push_back(low / 18);
        values[HighFlux].push_back(high / 325);
        values[ComplexFlux].push_back(complex / 509);
        double flux = 0;
        for (std::size_t band = 0; band < mel.size(); ++band) {
            const double melLevel = std::log1p(24 * mel[band]);
            flux += std::max(0.0, melLevel - std::exchange(m_melLevels[band], melLevel)) / 24;
        }
        values[MelFlux].push_back(flux);
    }

    std::array<std::vector<double>, kSeriesCount> values;

private:
    static std::vector<int> bandsOfBins()
    {
        const auto mel = [](double hz) { return 2595 * std::log10(1 + hz / 700); };
        std::vector<int> edges;
        for (int i = 0; i <= 24; ++i) {
            const double value = mel(35) + (mel(5000) - mel(35)) * i / 24;
            const double hz = 700 * (std::pow(10, value / 2595) - 1);
            edges.push_back(static_cast<int>(std::lround(hz * kFrameSize / kSampleRate)));
        }
        std::vector<int> bands(kBins, -1);
        for (int band = 0; band < 24; ++band) {
            for (int bin = edges[band]; bin <= edges[band + 1]; ++bin)
                bands[bin] = band;
        }
        return bands;
    }

    const std::vector<int> m_bandOfBin = bandsOfBins();
    std::vector<double> m_logarithms = std::vector<double>(kBins);
    std::vector<double> m_phases = std::vector<double>(kBins);
    std::vector<double> m_earlierPhases = std::vector<double>(kBins);
    std::vector<double> m_amplitudes = std::vector<double>(kBins);
    std::vector<double> m_melLevels = std::vector<double>(24);
    double m_level = 0;
};

std::vector<float> withGap()
{
    std::vector<float> samples = TempoSignals::slidingTone(16000);
    std::fill(samples.begin() + 5000, samples.begin() + 9000, 0.0F); // whole frames without phases
    return samples;
}

} // namespace

TEST(OnsetSeries, AreWhatTheirDefinitionSays)
{
    const std::pair<const char*, std::vector<float>> sounds[] = {{"sliding tone", TempoSignals::slidingTone(12000)},
                                                                 {"quiet noise", TempoSignals::noise(12000, 1e-4F)},
                                                                 {"with a gap", withGap()},
                                                                 {"one frame", TempoSignals::noise(1279)}};
    for (const auto& [name, samples] : sounds) {
        PlainOnsets plain;
        for (std::size_t start = 0; start + kFrameSize <= samples.size(); start += kHop)
            plain.measure(std::span(samples).subspan(start, kFrameSize));
        Pace pace = TempoSignals::freePace();
        const OnsetSection raw = rawOnsets(samples, pace);
        for (std::size_t k = 0; k < kSeriesCount; ++k) {
            ASSERT_EQ(raw[k].size(), plain.values[k].size()) << name << ' ' << k;
            const double largest = std::ranges::max(plain.values[k]);
            for (std::size_t i = 0; i < raw[k].size(); ++i)
                EXPECT_NEAR(raw[k][i], plain.values[k][i], 2e-6 * largest + 1e-7) << name << ' ' << k << ' ' << i;
        }
    }
}

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
