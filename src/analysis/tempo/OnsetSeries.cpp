#include "analysis/tempo/OnsetSeries.h"

#include "analysis/spectrum/FourierTransform.h"
#include "analysis/tempo/BPMError.h"
#include "analysis/tempo/FastLog1p.h"
#include "analysis/tempo/MelMap.h"
#include "analysis/tempo/NormalizedOnset.h"
#include "analysis/tempo/SpectralChange.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace BPMAnalyzer {

namespace {

/// Between two looks for a stop: about a millisecond.
constexpr int kPollFrames = 16;
/// No sound is louder; its power still fits a float.
constexpr float kLoudestSample = 1e9F;
// Chosen: docs/tempo.md, section 2, like the limits of the bands below.
constexpr float kEnergyGain = 48;
constexpr float kMelGain = 24;

constexpr int binOf(double hz)
{
    return static_cast<int>(hz * kFrameSize / kSampleRate + 0.5);
}

constexpr int kLowestBin = std::max(binOf(35), 1);
constexpr int kTopBin = std::min(kFrameSize / 2 - 1, binOf(8000));
constexpr int kLowBandEnd = std::min(std::max(binOf(220), kLowestBin + 1), kTopBin);
constexpr int kHighBandStart = std::min(std::max(binOf(2000), kLowBandEnd + 1), kTopBin);
static_assert(kLowestBin == 3 && kLowBandEnd == 20 && kHighBandStart == 186 && kTopBin == 511);

FourierTransform makeTransform()
{
    try {
        return FourierTransform(kFrameSize);
    } catch (const std::runtime_error&) {
        throw Error(Error::Case::TransformUnavailable);
    }
}

/// The values of the bins \p first to \p last.
std::span<const float> bins(std::span<const float> values, int first, int last)
{
    return values.subspan(std::size_t(first), std::size_t(last - first + 1));
}

float meanOf(std::span<const float> values)
{
    return sumOf(values) / float(std::max<std::size_t>(values.size(), 1));
}

/// Goes over frames in order and appends one value of each series per frame.
class OnsetMeter {
public:
    explicit OnsetMeter(std::size_t frameCount)
    {
        for (std::vector<float>& series : m_onsets)
            series.reserve(frameCount);
    }

    void measure(std::span<const float> samples)
    {
        const std::span<float> frame = m_transform.frame();
        for (std::size_t i = 0; i < frame.size(); ++i) {
            const float sample = std::abs(samples[i]) <= kLoudestSample ? samples[i] : 0.0F;
            frame[i] = sample * m_window[i];
        }
        m_onsets[EnergyFlux].push_back(energyIncrease(frame));
        m_transform.transform();
        const auto spectrum = m_transform.spectrum();
        m_change.advance({reinterpret_cast<const float*>(spectrum.data()), 2 * spectrum.size()});
        m_onsets[LowBand].push_back(meanOf(bins(m_change.increases(), kLowestBin, kLowBandEnd)));
        m_onsets[HighFlux].push_back(meanOf(bins(m_change.increases(), kHighBandStart + 1, kTopBin)));
        m_onsets[ComplexFlux].push_back(meanOf(bins(m_change.deviations(), kLowestBin, kTopBin)));
        m_onsets[MelFlux].push_back(melIncrease());
    }

    OnsetSection take() { return std::move(m_onsets); }

private:
    float energyIncrease(std::span<const float> frame)
    {
        const float rms = std::sqrt(sumOfSquares(frame) / float(kFrameSize));
        const float level = fastLog1p(rms * kEnergyGain);
        return std::max(0.0F, level - std::exchange(m_level, level));
    }

    float melIncrease()
    {
        float increase = 0;
        for (std::size_t i = 0; i < m_mel.bands.size(); ++i) {
            const int first = std::max(m_mel.bands[i].first, kLowestBin);
            const int end = std::min(m_mel.bands[i].end, kTopBin + 1);
            float amplitude = 0;
            for (int bin = first; bin < end; ++bin)
                amplitude += m_change.amplitudes()[std::size_t(bin)];
            const float level = fastLog1p(amplitude * kMelGain);
            increase += std::max(0.0F, level - std::exchange(m_melLevels[i], level));
        }
        return increase / float(MelMap::kBandCount);
    }

    FourierTransform m_transform = makeTransform();
    const std::vector<float> m_window = FourierTransform::hannWindow(kFrameSize);
    const MelMap m_mel = MelMap(kFrameSize, kSampleRate);
    SpectralChange m_change = SpectralChange(kLowestBin, kTopBin + 1);
    std::array<float, MelMap::kBandCount> m_melLevels{};
    float m_level = 0;
    OnsetSection m_onsets;
};

} // namespace

OnsetSection rawOnsets(std::span<const float> samples, Pace& pace)
{
    if (samples.size() < std::size_t(kFrameSize))
        return {};
    const std::size_t frameCount = (samples.size() - kFrameSize) / kHop + 1;
    OnsetMeter meter(frameCount);
    for (std::size_t frame = 0; frame < frameCount; ++frame) {
        if (frame % kPollFrames == 0) {
            pace.throwIfCancelled();
            pace.checkpoint(static_cast<int>(frame), kPollFrames);
        }
        meter.measure(samples.subspan(frame * kHop, kFrameSize));
    }
    return meter.take();
}

OnsetSection spectralFluxEnvelope(std::span<const float> samples, Pace& pace)
{
    OnsetSection section = rawOnsets(samples, pace);
    for (std::vector<float>& series : section)
        series = normalizedOnset(std::move(series), kEnvelopeRate);
    return section;
}

} // namespace BPMAnalyzer
