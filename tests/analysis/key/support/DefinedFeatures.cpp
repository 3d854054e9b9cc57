#include "key/support/DefinedFeatures.h"

#include "analysis/key/MusicalKeyProfiles.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace {

using Values = std::vector<double>;
using std::numbers::pi;

constexpr int kSize = 8192;

/// Squared magnitudes of the bins 0 to \p top of a windowed frame.
Values powersOf(const Values& frame, int top)
{
    std::vector<std::complex<double>> turns(kSize);
    for (int n = 0; n < kSize; ++n)
        turns[size_t(n)] = std::polar(1.0, -2 * pi * n / kSize);
    Values powers;
    for (int bin = 0; bin <= top; ++bin) {
        std::complex<double> sum = 0;
        for (int n = 0; n < kSize; ++n)
            sum += frame[size_t(n)] * turns[size_t(bin) * size_t(n) % kSize];
        powers.push_back(std::norm(sum));
    }
    return powers;
}

void addPeak(const Values& powers, int bin, double frequency, Values& chroma, Values& bass)
{
    const auto amplitude = [&](int at) { return std::sqrt(powers[size_t(at)]) / kSize; };
    double mean = 0;
    for (int at = bin - 2; at <= bin + 2; ++at)
        mean += amplitude(at) / 5;
    const double ratio = amplitude(bin) / std::max(mean, 1e-7);
    if (ratio <= 1.04)
        return;
    const double weight =
        std::pow(amplitude(bin), 0.58) * std::min(ratio, 2.4) / std::pow(std::max(frequency / 180, 1.0), 0.34);
    // Octaves above C0 count for nothing.
    const double c = 3 * std::fmod(12 * std::log2(frequency / 440) + 9 + 1200, 12);
    for (int k = int(std::round(c)) - 2; k <= int(std::round(c)) + 2; ++k) {
        const double distance = std::abs(k - c);
        if (distance > 1.5)
            continue;
        const double share = weight * std::pow(std::cos(distance * pi / 3), 2);
        chroma[size_t((k + 36) % 36)] += share;
        if (frequency <= 420)
            bass[size_t((k + 36) % 36)] += share;
    }
}

/// \return whether the frame counts.
bool addFrame(std::span<const float> samples, int sampleRate, Values& chromaTotals, Values& bassTotals)
{
    Values frame;
    double squares = 0;
    for (int n = 0; n < kSize; ++n) {
        frame.push_back(samples[size_t(n)] * std::sqrt(2.0 / 3) * (1 - std::cos(2 * pi * n / kSize)));
        squares += frame.back() * frame.back();
    }
    if (std::sqrt(squares / kSize) <= 8e-5)
        return false;
    const int lowest = std::max(int(std::round(55.0 * kSize / sampleRate)), 1);
    const int top = std::min(int(std::round(4200.0 * kSize / sampleRate)), 4095);
    const Values powers = powersOf(frame, top);
    const double highest = *std::max_element(powers.begin() + lowest, powers.end());
    Values chroma(36);
    Values bass(36);
    for (int bin = lowest + 2; bin < top - 2; ++bin) {
        const double power = powers[size_t(bin)];
        if (power >= highest * 3e-5 && powers[size_t(bin) - 1] < power && powers[size_t(bin) + 1] <= power)
            addPeak(powers, bin, double(bin) * sampleRate / kSize, chroma, bass);
    }
    double chromaSum = 0;
    double bassSum = 0;
    for (size_t k = 0; k < 36; ++k) {
        chromaSum += chroma[k];
        bassSum += bass[k];
    }
    if (chromaSum <= 0)
        return false;
    for (size_t k = 0; k < 36; ++k) {
        chromaTotals[k] += std::pow(chroma[k] / chromaSum, 0.72);
        bassTotals[k] += bassSum > 0 ? std::pow(bass[k] / bassSum, 0.82) : 0;
    }
    return true;
}

std::array<double, 12> folded(const Values& bins, int offset, double neighbours)
{
    std::array<double, 12> values;
    double squares = 0;
    for (int k = 0; k < 12; ++k) {
        const int at = 3 * k + offset + 36;
        values[size_t(k)] =
            bins[size_t(at % 36)] + neighbours * (bins[size_t((at - 1) % 36)] + bins[size_t((at + 1) % 36)]);
        squares += values[size_t(k)] * values[size_t(k)];
    }
    for (double& value : values)
        value /= squares > 0 ? std::sqrt(squares) : 1;
    return values;
}

/// By sums instead of deviations; \p valueOf gives the twelve values of the other list.
template <typename Function>
double correlation(const std::array<double, 12>& values, Function valueOf)
{
    double x = 0, y = 0, xx = 0, yy = 0, xy = 0;
    for (size_t k = 0; k < 12; ++k) {
        const double other = valueOf(k);
        x += values[k];
        y += other;
        xx += values[k] * values[k];
        yy += other * other;
        xy += values[k] * other;
    }
    return (xy - x * y / 12) / std::sqrt(std::max((xx - x * x / 12) * (yy - y * y / 12), 1e-7));
}

template <typename Function>
double bestOfAllKeys(Function score)
{
    double best = -2;
    for (const MusicalKeyMode mode : {MusicalKeyMode::Minor, MusicalKeyMode::Major}) {
        for (int tonic = 0; tonic < 12; ++tonic)
            best = std::max(best, score(MusicalKey{tonic, mode}));
    }
    return best;
}

double plainFit(const std::array<double, 12>& chroma)
{
    return bestOfAllKeys([&](const MusicalKey& key) {
        const auto& plain = MusicalKeyProfiles::plainTemplate(key.mode);
        return correlation(chroma, [&](size_t k) { return plain[(k + 12 - size_t(key.pitchClass)) % 12]; });
    });
}

double quality(const std::array<double, 12>& chroma)
{
    const double fit = bestOfAllKeys([&](const MusicalKey& key) {
        return correlation(chroma, [&](size_t k) { return MusicalKeyProfiles::reference(key).chroma[k]; });
    });
    double sum = 0;
    for (const double value : chroma)
        sum += value;
    double entropy = 0;
    for (const double value : chroma)
        entropy -= value > 0 ? value / sum * std::log(value / sum) : 0;
    return std::clamp((1 - entropy / std::log(12)) * 0.65 * 3.2 + std::max(fit, 0.0) * 0.35, 0.0, 1.0);
}

} // namespace

MusicalKeyFeatureVector::Section definedSection(std::span<const float> samples, int sampleRate)
{
    Values chroma(36);
    Values bass(36);
    int count = 0;
    for (size_t start = 0; start + kSize <= samples.size(); start += kSize / 2)
        count += addFrame(samples.subspan(start, kSize), sampleRate, chroma, bass) ? 1 : 0;
    for (size_t k = 0; k < 36; ++k) {
        chroma[k] /= count;
        bass[k] /= count;
    }
    int offset = -1;
    for (const int other : {0, 1}) {
        if (plainFit(folded(chroma, other, 0.45)) > plainFit(folded(chroma, offset, 0.45)))
            offset = other;
    }
    const auto tuned = folded(chroma, offset, 0.45);
    return {tuned, folded(bass, offset, 0.35), offset * 100.0 / 3, quality(tuned)};
}
