#include "ui/waveform/LogarithmicBarDrawer.h"

#include "WaveformScrubber/shape/Downsampler.h"

#include <cmath>

namespace {

float level(float amplitude)
{
    if (amplitude <= 0)
        return 0;
    return static_cast<float>(std::max(0.0, 1 + 20 * std::log10(double(amplitude)) / LogarithmicBarDrawer::kRange));
}

} // namespace

WaveformShape LogarithmicBarDrawer::shape(std::span<const float> samples, QSize size,
                                          const Configuration& configuration)
{
    if (samples.empty() || size.isEmpty())
        return {};
    // Energies are averaged before the logarithm is taken: the other way round, pauses would count too much.
    std::vector<float> values = Downsampler::prepareSamples(samples, BarDrawer::barCount(size.width(), configuration),
                                                            UpsampleStrategy::Smooth);
    std::ranges::transform(values, values.begin(), &level);
    return BarDrawer::bars(values, size, configuration);
}
