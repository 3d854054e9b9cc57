#include "WaveformScrubber/shape/EnvelopeBuilder.h"

#include "WaveformScrubber/shape/EnvelopeCurve.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct Level {
    double energy = 0;
    float peak = 0;
};

void include(Level& level, float sample)
{
    level.energy += double(sample) * double(sample);
    level.peak = std::max(level.peak, std::abs(sample));
}

Level levelOfFinite(std::span<const float> samples)
{
    Level level;
    for (const float sample : samples) {
        if (std::isfinite(sample))
            include(level, sample);
    }
    return level;
}

Level levelOf(std::span<const float> samples)
{
    // Sums side by side, which the compiler turns into vector instructions; one sum would have to keep its order.
    constexpr std::size_t kLanes = 8;
    std::array<double, kLanes> energies{};
    std::array<float, kLanes> peaks{};
    std::size_t index = 0;
    for (; index + kLanes <= samples.size(); index += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            const float sample = samples[index + lane];
            const float magnitude = std::abs(sample);
            energies[lane] += double(sample) * double(sample);
            peaks[lane] = peaks[lane] < magnitude ? magnitude : peaks[lane];
        }
    }
    Level level;
    for (; index < samples.size(); ++index)
        include(level, samples[index]);
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        level.energy += energies[lane];
        level.peak = std::max(level.peak, peaks[lane]);
    }
    return std::isfinite(level.energy) ? level : levelOfFinite(samples);
}

} // namespace

EnvelopeBuilder::EnvelopeBuilder(qint64 frameCount, int bucketCount, int channelCount)
    : m_frameCount(frameCount)
    , m_channelCount(channelCount)
    , m_buckets(std::size_t(bucketCount))
{
    Q_ASSERT(frameCount >= 1 && bucketCount >= 1 && channelCount >= 1);
}

qint64 EnvelopeBuilder::startOf(qint64 bucket) const
{
    return bucket * m_frameCount / qint64(m_buckets.size());
}

qint64 EnvelopeBuilder::endOf(qint64 bucket) const
{
    return std::max(startOf(bucket) + 1, startOf(bucket + 1));
}

void EnvelopeBuilder::add(std::span<const float> block)
{
    const auto bucketCount = qint64(m_buckets.size());
    const qint64 base = m_position;
    m_position += qint64(block.size()) / m_channelCount;
    const qint64 end = std::min(m_position, m_frameCount);
    if (base >= end)
        return;
    for (qint64 index = base * bucketCount / m_frameCount; index < bucketCount && startOf(index) < end; ++index) {
        const qint64 from = std::max(startOf(index), base);
        const qint64 to = std::min(endOf(index), end);
        if (from >= to)
            continue;
        const Level level = levelOf(
            block.subspan(std::size_t((from - base) * m_channelCount), std::size_t((to - from) * m_channelCount)));
        Bucket& bucket = m_buckets[std::size_t(index)];
        bucket.energy += level.energy / double(m_channelCount);
        bucket.peak = std::max(bucket.peak, level.peak);
        bucket.frames += to - from;
    }
}

std::vector<float> EnvelopeBuilder::envelope() const
{
    std::vector<float> rms;
    std::vector<float> peak;
    rms.reserve(m_buckets.size());
    peak.reserve(m_buckets.size());
    for (const Bucket& bucket : m_buckets) {
        rms.push_back(bucket.frames > 0 ? float(std::sqrt(bucket.energy / double(bucket.frames))) : 0.0F);
        peak.push_back(bucket.peak);
    }
    return EnvelopeCurve::shaped(rms, peak);
}

std::vector<float> normalizedEnvelope(std::span<const float> samples, int sampleCount)
{
    if (samples.empty() || sampleCount < 1)
        return {};
    EnvelopeBuilder builder(qint64(samples.size()), sampleCount, 1);
    builder.add(samples);
    return builder.envelope();
}
