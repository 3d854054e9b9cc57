#include "analysis/tempo/BeatGrid.h"

#include "analysis/tempo/Peaks.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 5. Lengths in frames, shares and weights from 0 to 1.
constexpr std::size_t kSmallestSeries = 17;
constexpr double kActiveShare = 0.62;
constexpr int kPhasesBetweenCheckpoints = 8;
constexpr double kSmallestPeriod = 2;
constexpr double kRadiusShare = 0.1;
constexpr float kStrongShare = 0.55F;
constexpr int kSmallestBeatCount = 6;
constexpr float kStrengthWeight = 0.42F;
constexpr float kCoverageWeight = 0.36F;
constexpr float kActiveWeight = 0.22F;
constexpr float kSmallestDivisor = 1e-6F;

/// What the beats of one phase met.
struct GridSums {
    int beats = 0;
    int activeBeats = 0;
    float peaks = 0;
    float covered = 0;
};

/// Walks the beats of one phase after the other.
class BeatWalk {
public:
    BeatWalk(const BeatGridContext& context, double period)
        : m_context(context)
        , m_period(period)
        , m_phaseCount(static_cast<int>(std::max(std::min(std::round(period), double(context.onset.size())), 1.0)))
        , m_radius(std::max(std::round(period * kRadiusShare), 1.0))
        , m_mayOverlap(2 * m_radius >= std::max(std::round(period), 1.0))
    {
    }

    int phaseCount() const { return m_phaseCount; }

    GridSums walk(int phase)
    {
        const std::span<const float> onset = m_context.onset;
        const double count = double(onset.size());
        GridSums sums;
        if (m_mayOverlap)
            m_isCovered.assign(onset.size(), false);
        for (double position = phase; position < count; position += m_period) {
            const double centre = std::round(position);
            const auto first = static_cast<std::size_t>(std::max(centre - m_radius, 0.0));
            const auto end = static_cast<std::size_t>(std::min(centre + m_radius + 1, count));
            if (first < end)
                addBeat(sums, first, end);
        }
        if (m_mayOverlap) {
            for (std::size_t i = 0; i < onset.size(); ++i)
                sums.covered += m_isCovered[i] ? onset[i] : 0;
        }
        return sums;
    }

private:
    void addBeat(GridSums& sums, std::size_t first, std::size_t end)
    {
        float peak = m_context.onset[first];
        float total = 0;
        for (std::size_t i = first; i < end; ++i) {
            peak = std::max(peak, m_context.onset[i]);
            total += m_context.onset[i];
        }
        ++sums.beats;
        sums.activeBeats += peak >= m_context.activeThreshold ? 1 : 0;
        sums.peaks += peak;
        if (m_mayOverlap)
            std::fill(m_isCovered.begin() + std::ptrdiff_t(first), m_isCovered.begin() + std::ptrdiff_t(end), true);
        else
            sums.covered += total;
    }

    const BeatGridContext& m_context;
    const double m_period;
    const int m_phaseCount; ///< those after the end of the series have no beats, so they are left out
    const double m_radius;
    const bool m_mayOverlap;
    std::vector<bool> m_isCovered;
};

float fitnessOf(const GridSums& sums, const BeatGridContext& context)
{
    if (sums.beats < kSmallestBeatCount)
        return 0;
    const float beats = float(sums.beats);
    const float strong = std::max(kStrongShare * context.strongest, kSmallestDivisor);
    const float total = std::max(context.totalSalience, kSmallestDivisor);
    return kStrengthWeight * std::min(sums.peaks / beats / strong, 1.0F) +
           kCoverageWeight * std::min(sums.covered / total, 1.0F) + kActiveWeight * (float(sums.activeBeats) / beats);
}

} // namespace

std::optional<BeatGridContext> BeatGridContext::of(std::span<const float> onset)
{
    const std::optional<float> threshold = positiveQuantile(onset, kActiveShare);
    if (onset.size() < kSmallestSeries || !threshold)
        return std::nullopt;
    return BeatGridContext{.onset = onset,
                           .strongest = *std::ranges::max_element(onset),
                           .activeThreshold = *threshold,
                           .totalSalience = std::accumulate(onset.begin(), onset.end(), 0.0F)};
}

float beatGridFitness(const BeatGridContext& context, double period, Pace& pace)
{
    if (!(period >= kSmallestPeriod))
        return 0;
    BeatWalk walk(context, period);
    float best = 0;
    for (int phase = 0; phase < walk.phaseCount(); ++phase) {
        if (pace.isCancelled())
            return best;
        pace.checkpoint(phase, kPhasesBetweenCheckpoints);
        best = std::max(best, fitnessOf(walk.walk(phase), context));
    }
    return best;
}

} // namespace BPMAnalyzer
