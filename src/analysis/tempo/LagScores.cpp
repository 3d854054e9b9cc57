#include "analysis/tempo/LagScores.h"

#include "analysis/tempo/Peaks.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Looks for a stop: a few milliseconds apart.
constexpr int kLagsBetweenCheckpoints = 8;
constexpr int kPeaksBetweenCheckpoints = 16;
// Chosen: docs/tempo.md, section 3.
constexpr double kPeakShare = 0.58;
constexpr std::size_t kMaximumPeaks = 420;
constexpr int kMaximumMultiple = 4;
/// The share of autocorrelation in the score; energy has too few clear peaks to be counted by them.
constexpr std::array<float, kSeriesCount> kAutocorrelationShares{0.57F, 0.57F, 0.70F, 0.57F, 0.57F};

float dotProduct(std::span<const float> a, std::span<const float> b)
{
    constexpr std::size_t kLanes = 8;
    std::array<float, kLanes> lanes{};
    std::size_t i = 0;
    for (; i + kLanes <= a.size(); i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            lanes[lane] += a[i + lane] * b[i + lane];
    }
    float sum = 0;
    for (const float lane : lanes)
        sum += lane;
    for (; i < a.size(); ++i)
        sum += a[i] * b[i];
    return sum;
}

/// Gives an interval of peaks to the lags that divide it, each share to the two whole lags beside it.
void addInterval(std::vector<float>& scores, int interval, float strength, LagRange lags)
{
    for (int multiple = 1; multiple <= kMaximumMultiple; ++multiple) {
        const float lag = float(interval) / float(multiple);
        if (lag < float(lags.minimum))
            return;
        if (lag > float(lags.maximum))
            continue;
        const int below = static_cast<int>(lag);
        const float share = strength / std::sqrt(float(multiple));
        const float rest = lag - float(below);
        scores[std::size_t(below)] += share * (1 - rest);
        if (below < lags.maximum)
            scores[std::size_t(below) + 1] += share * rest;
    }
}

void scaleToOne(std::vector<float>& scores)
{
    const float largest = *std::ranges::max_element(scores);
    if (largest > 0) {
        for (float& score : scores)
            score /= largest;
    }
}

} // namespace

std::vector<float> autocorrelationScores(std::span<const float> series, int limit, Pace& pace)
{
    std::vector<float> scores(std::size_t(limit) + 1);
    const std::size_t count = series.size();
    if (std::size_t(limit) >= count)
        return scores;
    std::vector<double> squares(count + 1); // sums of all before
    for (std::size_t i = 0; i < count; ++i)
        squares[i + 1] = squares[i] + double(series[i]) * double(series[i]);
    for (int lag = 1; lag <= limit; ++lag) {
        pace.checkpoint(lag, kLagsBetweenCheckpoints);
        const std::size_t overlap = count - std::size_t(lag);
        const float product = dotProduct(series.first(overlap), series.subspan(std::size_t(lag)));
        const float energies = static_cast<float>(squares[overlap] * (squares[count] - squares[std::size_t(lag)]));
        scores[std::size_t(lag)] = product / std::sqrt(std::max(energies, 1e-6F));
        if (pace.isCancelled())
            break;
    }
    return scores;
}

std::vector<float> peakIntervalScores(std::span<const float> series, LagRange lags, Pace& pace)
{
    std::vector<float> scores(std::size_t(lags.maximum) + 1);
    const std::vector<int> peaks = strongestPeaks(series, kPeakShare, kMaximumPeaks);
    for (std::size_t a = 0; a < peaks.size(); ++a) {
        if (pace.isCancelled())
            return scores;
        pace.checkpoint(static_cast<int>(a), kPeaksBetweenCheckpoints);
        for (std::size_t b = a + 1; b < peaks.size(); ++b) {
            const int interval = peaks[b] - peaks[a];
            if (interval > kMaximumMultiple * lags.maximum)
                break;
            const float product = series[std::size_t(peaks[a])] * series[std::size_t(peaks[b])];
            addInterval(scores, interval, std::sqrt(std::max(product, 0.0F)), lags);
        }
    }
    scaleToOne(scores);
    return scores;
}

std::optional<SectionScores> lagScores(const OnsetSection& section, LagRange lags, Pace& pace)
{
    const auto shortest = std::ranges::min_element(section, {}, &std::vector<float>::size)->size();
    const int limit = std::min(static_cast<int>(shortest) - 2, lags.maximum);
    if (limit <= lags.minimum)
        return std::nullopt;
    SectionScores scores;
    for (std::size_t k = 0; k < kSeriesCount; ++k) {
        const float share = kAutocorrelationShares[k];
        scores[k] = autocorrelationScores(section[k], limit, pace);
        const std::vector<float> intervals = peakIntervalScores(section[k], {lags.minimum, limit}, pace);
        for (std::size_t lag = 0; lag < scores[k].size(); ++lag)
            scores[k][lag] = share * scores[k][lag] + (1 - share) * intervals[lag];
    }
    return scores;
}

} // namespace BPMAnalyzer
