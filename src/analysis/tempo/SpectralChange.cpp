#include "analysis/tempo/SpectralChange.h"

#include "analysis/tempo/FastLog1p.h"

#include <array>
#include <cmath>
#include <utility>

namespace BPMAnalyzer {

namespace {

constexpr float kAmplitudeGain = 32;
constexpr float kDeviationGain = 48;
/// Squared magnitudes below this are silence; keeps the arithmetic away from the slow numbers next to zero.
constexpr float kSilentPower = 1e-30F;

constexpr std::size_t kLanes = 8;

float totalOf(const std::array<float, kLanes>& lanes)
{
    return ((lanes[0] + lanes[4]) + (lanes[1] + lanes[5])) + ((lanes[2] + lanes[6]) + (lanes[3] + lanes[7]));
}

} // namespace

SpectralChange::SpectralChange(int frameSize, int first, int end)
    : m_first(first)
    , m_end(end)
    , m_scale(1.0F / float(frameSize))
    , m_amplitudes(std::size_t(frameSize / 2))
    , m_logarithms(m_amplitudes)
    , m_increases(m_amplitudes)
    , m_deviations(m_amplitudes)
    , m_last{std::vector<float>(m_amplitudes.size(), 1.0F), m_amplitudes}
    , m_beforeLast(m_last)
{
}

void SpectralChange::advance(std::span<const std::complex<float>> spectrum)
{
    // The arrays are distinct; what the compiler is told so, it does in vectors.
    const float* __restrict points = reinterpret_cast<const float*>(spectrum.data());
    float* __restrict amplitudes = m_amplitudes.data();
    float* __restrict logarithms = m_logarithms.data();
    float* __restrict increases = m_increases.data();
    float* __restrict deviations = m_deviations.data();
    const float* __restrict lastCosines = m_last.cosines.data();
    const float* __restrict lastSines = m_last.sines.data();
    float* __restrict cosines = m_beforeLast.cosines.data(); // in: the older phase, out: the new one
    float* __restrict sines = m_beforeLast.sines.data();
    const float scale = m_scale;
    for (int bin = m_first; bin < m_end; ++bin) {
        const float real = points[2 * bin];
        const float imaginary = points[2 * bin + 1];
        const float power = real * real + imaginary * imaginary;
        const bool sounds = power > kSilentPower;
        const float magnitude = std::sqrt(sounds ? power : 1.0F);
        const float amplitude = sounds ? magnitude * scale : 0.0F;
        const float cosine = sounds ? real / magnitude : 1.0F;
        const float sine = sounds ? imaginary / magnitude : 0.0F;

        // A steady tone turns by the same angle again: u1 * u1 / u0, all of length 1.
        const float squaredCosine = lastCosines[bin] * lastCosines[bin] - lastSines[bin] * lastSines[bin];
        const float squaredSine = 2 * lastCosines[bin] * lastSines[bin];
        const float predictedCosine = squaredCosine * cosines[bin] + squaredSine * sines[bin];
        const float predictedSine = squaredSine * cosines[bin] - squaredCosine * sines[bin];
        const float dx = amplitude * cosine - amplitudes[bin] * predictedCosine;
        const float dy = amplitude * sine - amplitudes[bin] * predictedSine;
        deviations[bin] = fastLog1p(std::sqrt(dx * dx + dy * dy) * kDeviationGain);

        const float logarithm = fastLog1p(amplitude * kAmplitudeGain);
        const float growth = logarithm - logarithms[bin];
        increases[bin] = growth > 0 ? growth : 0.0F;
        logarithms[bin] = logarithm;
        amplitudes[bin] = amplitude;
        cosines[bin] = cosine;
        sines[bin] = sine;
    }
    std::swap(m_last, m_beforeLast);
}

float sumOf(std::span<const float> values)
{
    std::array<float, kLanes> lanes{};
    std::size_t i = 0;
    for (; i + kLanes <= values.size(); i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            lanes[lane] += values[i + lane];
    }
    float sum = totalOf(lanes);
    for (; i < values.size(); ++i)
        sum += values[i];
    return sum;
}

float sumOfSquares(std::span<const float> values)
{
    std::array<float, kLanes> lanes{};
    std::size_t i = 0;
    for (; i + kLanes <= values.size(); i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            lanes[lane] += values[i + lane] * values[i + lane];
    }
    float sum = totalOf(lanes);
    for (; i < values.size(); ++i)
        sum += values[i] * values[i];
    return sum;
}

} // namespace BPMAnalyzer
