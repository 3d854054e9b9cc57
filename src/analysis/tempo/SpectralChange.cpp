#include "analysis/tempo/SpectralChange.h"

#include "analysis/tempo/FastLog1p.h"

#include <array>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 2: how far faint sound counts beside loud.
constexpr float kAmplitudeGain = 32;
constexpr float kDeviationGain = 48;
/// Squared magnitudes below this are silence; keeps the arithmetic away from the slow numbers next to zero.
constexpr float kSilentPower = 1e-30F;

/// From a transform without scale to amplitudes.
constexpr float kScale = 1.0F / kFrameSize;

/// A deviation below this share of both amplitudes is what rounding leaves of a bin that goes on as foreseen: several
/// products of floats. It has to count as none, else a passage that repeats itself would be full of faint onsets.
constexpr float kRounding = 5e-7F;

constexpr std::size_t kLanes = 8;

float totalOf(const std::array<float, kLanes>& lanes)
{
    return ((lanes[0] + lanes[4]) + (lanes[1] + lanes[5])) + ((lanes[2] + lanes[6]) + (lanes[3] + lanes[7]));
}

} // namespace

SpectralChange::SpectralChange(int first, int end)
    : m_first(first)
    , m_end(end)
{
    m_bins.cosines.fill(1);
    m_bins.earlierCosines.fill(1);
}

void SpectralChange::advance(std::span<const float> points)
{
    advance(m_bins, points.data(), m_first, m_end);
}

void SpectralChange::advance(Bins& bins, const float* __restrict points, int first, int end)
{
    for (int i = first; i < end; ++i) {
        const float real = points[2 * i];
        const float imaginary = points[2 * i + 1];
        const float power = real * real + imaginary * imaginary;
        const bool sounds = power > kSilentPower;
        const float magnitude = std::sqrt(sounds ? power : 1.0F);
        const float amplitude = sounds ? magnitude * kScale : 0.0F;

        // A steady tone turns by the same angle again: u1 * u1 / u0, all of length 1.
        const float cosine = bins.cosines[i];
        const float sine = bins.sines[i];
        const float squaredCosine = cosine * cosine - sine * sine;
        const float squaredSine = 2 * cosine * sine;
        const float predictedCosine = squaredCosine * bins.earlierCosines[i] + squaredSine * bins.earlierSines[i];
        const float predictedSine = squaredSine * bins.earlierCosines[i] - squaredCosine * bins.earlierSines[i];
        const float dx = (sounds ? real * kScale : 0.0F) - bins.amplitudes[i] * predictedCosine;
        const float dy = (sounds ? imaginary * kScale : 0.0F) - bins.amplitudes[i] * predictedSine;
        const float deviation = std::sqrt(dx * dx + dy * dy);
        const bool deviates = deviation > kRounding * (amplitude + bins.amplitudes[i]);
        bins.deviations[i] = fastLog1p(deviates ? deviation * kDeviationGain : 0.0F);

        const float logarithm = fastLog1p(amplitude * kAmplitudeGain);
        const float growth = logarithm - bins.logarithms[i];
        bins.increases[i] = growth > 0 ? growth : 0.0F;
        bins.logarithms[i] = logarithm;
        bins.amplitudes[i] = amplitude;
        bins.earlierCosines[i] = cosine;
        bins.earlierSines[i] = sine;
        bins.cosines[i] = sounds ? real / magnitude : 1.0F;
        bins.sines[i] = sounds ? imaginary / magnitude : 0.0F;
    }
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
