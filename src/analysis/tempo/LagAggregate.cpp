#include "analysis/tempo/LagAggregate.h"

#include "analysis/tempo/BPMError.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 4.
// The median keeps a break without drums from spoiling a lag; the mean keeps what few sections say.
constexpr float kSeriesMedianShare = 0.70F;
constexpr float kFusedMedianShare = 0.72F;
constexpr float kDoubleShare = 0.24F;
constexpr float kTripleShare = 0.12F;
constexpr float kHalfShare = 0.12F;
constexpr float kDisagreementDecay = 4.5F;

float mean(std::span<const float> values)
{
    return std::accumulate(values.begin(), values.end(), 0.0F) / float(values.size());
}

float medianAndMean(const std::vector<float>& values, float medianShare)
{
    return medianShare * median(values) + (1 - medianShare) * mean(values);
}

float populationDeviation(std::span<const float> values)
{
    const float middle = mean(values);
    float squares = 0;
    for (const float value : values)
        squares += (value - middle) * (value - middle);
    return std::sqrt(squares / float(values.size()));
}

/// The scores of all series as one, by their weights.
std::vector<float> fuse(const SectionScores& scores)
{
    const std::size_t count = std::ranges::min_element(scores, {}, &std::vector<float>::size)->size();
    std::vector<float> fused(count);
    for (std::size_t k = 0; k < kSeriesCount; ++k) {
        for (std::size_t lag = 0; lag < count; ++lag)
            fused[lag] += kSeriesWeights[k] * scores[k][lag];
    }
    return fused;
}

/// One series over all sections; lags below the range stay 0.
std::vector<float> seriesScores(std::span<const SectionScores> sections, std::size_t series, LagRange lags)
{
    std::vector<float> scores(std::size_t(lags.maximum) + 1);
    std::vector<float> values(sections.size());
    for (std::size_t lag = std::size_t(lags.minimum); lag < scores.size(); ++lag) {
        std::ranges::transform(sections, values.begin(), [&](const auto& section) { return section[series][lag]; });
        scores[lag] = medianAndMean(values, kSeriesMedianShare);
    }
    const float largest = *std::ranges::max_element(scores);
    if (largest > 0) {
        for (float& score : scores)
            score /= largest;
    }
    return scores;
}

int bestLag(std::span<const float> scores, LagRange lags)
{
    int best = lags.minimum;
    for (int lag = lags.minimum + 1; lag <= lags.maximum; ++lag) {
        if (profileScore(scores, lag) > profileScore(scores, best))
            best = lag;
    }
    return best;
}

} // namespace

float median(std::vector<float> values)
{
    if (values.empty())
        return 0;
    std::ranges::sort(values);
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

float profileScore(std::span<const float> scores, int index)
{
    const auto at = [&](int i) { return i >= 0 && std::size_t(i) < scores.size() ? scores[std::size_t(i)] : 0.0F; };
    if (index < 0 || std::size_t(index) >= scores.size())
        return 0;
    return at(index) + kDoubleShare * at(2 * index) + kTripleShare * at(3 * index) +
           kHalfShare * at(std::max(index, 2) / 2);
}

LagAggregate aggregateScores(std::span<const SectionScores> sections, int minimumLag)
{
    std::vector<std::vector<float>> fused;
    std::ranges::transform(sections, std::back_inserter(fused), fuse);
    const std::size_t shortest = std::ranges::min_element(fused, {}, &std::vector<float>::size)->size();
    const LagRange lags{.minimum = minimumLag, .maximum = static_cast<int>(shortest) - 1};
    if (lags.minimum >= lags.maximum)
        throw Error(Error::Case::EmptyLagRange);
    LagAggregate result;
    for (std::size_t k = 0; k < kSeriesCount; ++k) {
        result.series[k] = seriesScores(sections, k, lags);
        result.votes[k] = bestLag(result.series[k], lags);
    }
    std::vector<float> values(fused.size());
    for (int lag = lags.minimum; lag <= lags.maximum; ++lag) {
        std::ranges::transform(fused, values.begin(), [&](const auto& scores) { return scores[std::size_t(lag)]; });
        result.candidates.push_back({.lag = lag,
                                     .periodicity = medianAndMean(values, kFusedMedianShare),
                                     .agreement = std::exp(-kDisagreementDecay * populationDeviation(values))});
    }
    if (result.candidates.empty())
        throw Error(Error::Case::NoCandidate);
    return result;
}

} // namespace BPMAnalyzer
