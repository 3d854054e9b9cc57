#include "WaveformScrubber/shape/Downsampler.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace Downsampler {

namespace {

float rootMeanSquare(std::span<const float> samples)
{
    double sum = 0;
    for (const float sample : samples)
        sum += double(sample) * double(sample);
    return float(std::sqrt(sum / double(samples.size())));
}

std::vector<float> magnitudes(std::span<const float> samples)
{
    std::vector<float> values(samples.size());
    std::ranges::transform(samples, values.begin(), [](float sample) { return std::abs(sample); });
    return values;
}

} // namespace

std::vector<float> downsample(std::span<const float> samples, int count, UpsampleStrategy strategy)
{
    const auto sampleCount = qint64(samples.size());
    if (sampleCount <= count)
        return Upsampler::upsample(magnitudes(samples), count, strategy);
    std::vector<float> values;
    values.reserve(std::size_t(count));
    for (qint64 index = 0; index < count; ++index) {
        const qint64 start = index * sampleCount / count;
        const qint64 end = (index + 1) * sampleCount / count;
        values.push_back(rootMeanSquare(samples.subspan(std::size_t(start), std::size_t(end - start))));
    }
    return values;
}

std::vector<float> prepareSamples(std::span<const float> samples, int count, UpsampleStrategy strategy)
{
    if (count < 1 || samples.empty())
        return {};
    return downsample(samples, count, strategy);
}

} // namespace Downsampler
