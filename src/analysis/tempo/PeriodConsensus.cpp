#include "analysis/tempo/PeriodConsensus.h"

#include "analysis/tempo/Peaks.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 6. Counts, and shares from 0 to 1 where no unit is named.
constexpr double kSmallestPeriod = 6;
constexpr std::ptrdiff_t kSmallestPositiveCount = 8;
constexpr double kPeakShare = 0.68;
constexpr std::size_t kMaximumPeaks = 140;
constexpr std::size_t kSmallestPeakCount = 4;
constexpr double kMostBeats = 8;
constexpr double kTolerance = 0.85; // frames
constexpr std::size_t kSmallestRecordCount = 6;
constexpr double kFullRecordCount = 24;
constexpr double kSmallestTrust = 0.05;
constexpr std::size_t kSmallestSeriesCount = 3;
constexpr double kLargestShift = 0.75; // frames
constexpr double kConsensusShare = 0.8;

/// The length of a beat by each pair of peaks that may be two to eight beats apart.
std::vector<WeightedValue> beatLengths(std::span<const float> series, std::span<const int> peaks, double period)
{
    const double longest = std::ceil((period + kTolerance) * kMostBeats);
    std::vector<WeightedValue> lengths;
    for (std::size_t a = 0; a < peaks.size(); ++a) {
        for (std::size_t b = a + 1; b < peaks.size(); ++b) {
            const double interval = peaks[b] - peaks[a];
            if (interval > longest)
                break;
            const double beats = std::round(interval / period);
            if (beats < 2 || beats > kMostBeats || std::abs(interval / beats - period) > kTolerance)
                continue;
            const double strength = double(series[std::size_t(peaks[a])]) * double(series[std::size_t(peaks[b])]);
            lengths.push_back({interval / beats, std::sqrt(beats) * std::sqrt(std::max(strength, 0.0))});
        }
    }
    return lengths;
}

/// The period by one series, and how far it can be trusted.
std::optional<WeightedValue> contributionOf(std::span<const float> series, double period)
{
    const bool isLongEnough = double(series.size()) > std::trunc(4 * period);
    if (!isLongEnough || std::ranges::count_if(series, [](float x) { return x > 0; }) < kSmallestPositiveCount)
        return std::nullopt;
    const std::vector<int> peaks = strongestPeaks(series, kPeakShare, kMaximumPeaks);
    if (peaks.size() < kSmallestPeakCount)
        return std::nullopt;
    std::vector<WeightedValue> records = beatLengths(series, peaks, period);
    const std::optional<double> middle = weightedMedian(records);
    if (records.size() < kSmallestRecordCount || !middle)
        return std::nullopt;
    const double fullness = std::min(double(records.size()) / kFullRecordCount, 1.0);
    for (WeightedValue& record : records)
        record.value = std::abs(record.value - *middle);
    const double spread = weightedMedian(std::move(records)).value_or(0) / kTolerance;
    return WeightedValue{*middle, fullness * std::max(1 - spread, kSmallestTrust)};
}

} // namespace

std::optional<double> weightedMedian(std::vector<WeightedValue> values)
{
    std::erase_if(values, [](const WeightedValue& x) { return !std::isfinite(x.value) || !(x.weight > 0); });
    std::ranges::stable_sort(values, {}, &WeightedValue::value);
    double total = 0;
    for (const WeightedValue& value : values)
        total += value.weight;
    double weight = 0;
    for (const WeightedValue& value : values) {
        weight += value.weight;
        if (weight >= total / 2)
            return value.value;
    }
    return std::nullopt;
}

double consensusRefinedPeriod(double period, std::span<const std::span<const float>> series, const Pace& pace)
{
    if (!std::isfinite(period) || period < kSmallestPeriod)
        return period;
    std::vector<WeightedValue> contributions;
    for (const std::span<const float> values : series) {
        if (pace.isCancelled())
            return period;
        if (const std::optional<WeightedValue> contribution = contributionOf(values, period))
            contributions.push_back(*contribution);
    }
    if (contributions.size() < kSmallestSeriesCount)
        return period;
    const std::optional<double> consensus = weightedMedian(std::move(contributions));
    if (!consensus || std::abs(*consensus - period) > kLargestShift)
        return period;
    return (1 - kConsensusShare) * period + kConsensusShare * *consensus;
}

} // namespace BPMAnalyzer
