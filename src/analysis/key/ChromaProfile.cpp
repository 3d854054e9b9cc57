// For every frame: window, transform, the peaks of the spectrum, each spread over the bins of the chroma that are near;
// the frame's chroma is made relative to its sum and compressed, so that loud frames do not drown the others; the mean
// over the frames is the profile. docs/key.md derives it.

#include "analysis/key/ChromaProfile.h"

#include "async/Cancelled.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace MusicalKeyAnalyzer {

namespace {

// Origins: docs/key.md, "Frames" and "Peaks".
constexpr std::size_t kHop = kFrameSize / 2;
constexpr std::size_t kFramesBetweenRests = 12;
constexpr double kRestSeconds = 0.001;
constexpr int kFewestFrames = 3;
constexpr double kQuietestRMS = 8e-05;
constexpr float kLowestPeak = 3e-05F; ///< of the highest power
constexpr double kSmallestMean = 1e-07;
constexpr double kFlattestRatio = 1.04;
constexpr double kSteepestRatio = 2.4;
constexpr double kAmplitudeExponent = 0.58;
constexpr double kChromaExponent = 0.72;
constexpr double kBassExponent = 0.82; ///< differs from the other on purpose

/// Partial results side by side, which the compiler may keep in one register: it may not reorder floats by itself.
constexpr std::size_t kLanes = 8;

/// Writes the windowed frame. \return its root mean square.
double windowed(std::span<const float> frame, std::span<const float> window, std::span<float> result)
{
    static_assert(kFrameSize % kLanes == 0);
    std::array<float, kLanes> squares = {};
    for (std::size_t i = 0; i < kFrameSize; i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            const float value = frame[i + lane] * window[i + lane];
            result[i + lane] = value;
            squares[lane] += value * value;
        }
    }
    return std::sqrt(std::accumulate(squares.begin(), squares.end(), 0.0) / kFrameSize);
}

/// Adds the compressed shares of the bins in their sum. \return whether there is one.
bool addCompressed(const ChromaBins& bins, double exponent, ChromaBins& totals)
{
    const double sum = std::accumulate(bins.begin(), bins.end(), 0.0);
    if (!(sum > 0))
        return false;
    for (std::size_t bin = 0; bin < bins.size(); ++bin)
        totals[bin] += std::pow(bins[bin] / sum, exponent);
    return true;
}

void divide(ChromaBins& bins, int divisor)
{
    for (double& value : bins)
        value /= divisor;
}

} // namespace

ChromaListener::ChromaListener(int sampleRate, bool lowImpact, std::stop_token stop, const WorkerClock& clock)
    : m_pitches(sampleRate)
    , m_lowImpact(lowImpact)
    , m_stop(std::move(stop))
    , m_clock(clock)
    , m_transform(kFrameSize)
    , m_window(FourierTransform::hannWindow(kFrameSize))
    , m_powers(static_cast<std::size_t>(m_pitches.top() + 1))
{
}

void ChromaListener::rest() const
{
    if (m_stop.stop_requested())
        throw async::Cancelled();
    if (m_lowImpact)
        m_clock.sleep(async::seconds(kRestSeconds));
}

/// \return whether the frame is loud enough to be listened to; then its powers are there.
bool ChromaListener::transform(std::span<const float> frame)
{
    if (!(windowed(frame, m_window, m_transform.frame()) > kQuietestRMS))
        return false;
    m_transform.transform();
    m_transform.squaredMagnitudes(m_powers);
    return true;
}

/// 0 without bins; powers that are no numbers do not count.
float ChromaListener::highestPower() const
{
    std::array<float, kLanes> highest = {};
    int bin = m_pitches.lowest();
    for (; bin + int(kLanes) <= m_pitches.top() + 1; bin += kLanes) {
        const float* const powers = m_powers.data() + bin;
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            highest[lane] = highest[lane] < powers[lane] ? powers[lane] : highest[lane];
    }
    for (; bin <= m_pitches.top(); ++bin)
        highest[0] = std::max(highest[0], m_powers[static_cast<std::size_t>(bin)]);
    return *std::ranges::max_element(highest);
}

void ChromaListener::addPeak(int bin, ChromaProfile& frame) const
{
    const float* const powers = m_powers.data() + bin;
    const auto amplitude = [powers](int offset) { return std::sqrt(double(powers[offset])) / kFrameSize; };
    const double height = amplitude(0);
    const double mean = (amplitude(-2) + amplitude(-1) + height + amplitude(1) + amplitude(2)) / 5;
    const double ratio = height / std::max(mean, kSmallestMean);
    if (!(ratio > kFlattestRatio))
        return;
    const PitchMap::Pitch& pitch = m_pitches.pitch(bin);
    const double weight = std::pow(height, kAmplitudeExponent) * std::min(ratio, kSteepestRatio) / pitch.divisor;
    for (const PitchMap::Share& share : pitch.used()) {
        const double value = weight * share.weight;
        frame.chroma[share.bin] += value;
        if (pitch.isBass)
            frame.bass[share.bin] += value;
    }
}

/// What one frame adds, not yet compressed.
ChromaProfile ChromaListener::peaks(float highest) const
{
    ChromaProfile frame;
    const float lowestPeak = highest * kLowestPeak;
    const float* const powers = m_powers.data();
    for (int bin = m_pitches.lowest() + 2; bin < m_pitches.top() - 2; ++bin) {
        if (powers[bin] >= lowestPeak && powers[bin - 1] < powers[bin] && powers[bin + 1] <= powers[bin])
            addPeak(bin, frame);
    }
    return frame;
}

std::optional<ChromaProfile> ChromaListener::profile(std::span<const float> samples)
{
    ChromaProfile totals;
    int counted = 0;
    for (std::size_t frame = 0; frame * kHop + kFrameSize <= samples.size(); ++frame) {
        if (frame % kFramesBetweenRests == 0)
            rest();
        if (!transform(samples.subspan(frame * kHop, kFrameSize)))
            continue;
        const float highest = highestPower();
        if (!(highest > 0))
            continue;
        const ChromaProfile heard = peaks(highest);
        if (!addCompressed(heard.chroma, kChromaExponent, totals.chroma))
            continue;
        ++counted;
        addCompressed(heard.bass, kBassExponent, totals.bass);
    }
    if (counted < kFewestFrames)
        return std::nullopt;
    divide(totals.chroma, counted);
    divide(totals.bass, counted);
    return totals;
}

} // namespace MusicalKeyAnalyzer
