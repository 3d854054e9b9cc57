#include "support/Recordings.h"

#include <algorithm>
#include <cmath>
#include <cstring>

std::vector<float> Recordings::samplesOf(const QByteArray& bytes)
{
    std::vector<float> samples(static_cast<size_t>(bytes.size()) / sizeof(float));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(float));
    return samples;
}

size_t Recordings::firstDifference(const std::vector<float>& one, const std::vector<float>& other)
{
    const size_t count = std::min(one.size(), other.size());
    for (size_t index = 0; index < count; ++index) {
        if (!(std::abs(one[index] - other[index]) <= kQuantisationStep))
            return index;
    }
    return count;
}

std::vector<float> Recordings::withoutSilenceInFront(const std::vector<float>& samples)
{
    return {std::ranges::find_if(samples, [](float sample) { return sample != 0; }), samples.end()};
}
