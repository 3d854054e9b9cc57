#include "analysis/key/PitchMap.h"

#include "analysis/key/AnalysisRanges.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace MusicalKeyAnalyzer {

namespace {

// Origins: docs/key.md, "Peaks".
constexpr double kLowestHz = 55;
constexpr double kTopHz = 4200;
constexpr double kBassTopHz = 420;
constexpr double kConcertPitchHz = 440;
constexpr int kConcertPitchClass = 9;
constexpr double kDampingFromHz = 180;
constexpr double kDampingExponent = 0.34;
constexpr double kReach = 1.5; ///< bins of the chroma on either side, where cos² gets to 0

PitchMap::Pitch pitchOf(double frequency)
{
    PitchMap::Pitch pitch;
    pitch.isBass = frequency <= kBassTopHz;
    pitch.divisor = std::pow(std::max(frequency / kDampingFromHz, 1.0), kDampingExponent);
    double position = std::fmod(12 * std::log2(frequency / kConcertPitchHz) + kConcertPitchClass, kPitchClassCount);
    if (position < 0)
        position += kPitchClassCount;
    const double center = position * kBinsPerSemitone;
    const int nearest = static_cast<int>(std::round(center));
    for (int bin = nearest - 2; bin <= nearest + 2; ++bin) {
        const double distance = std::abs(bin - center);
        if (distance > kReach)
            continue;
        const double cosine = std::cos(distance * std::numbers::pi / 3);
        pitch.shares[static_cast<std::size_t>(pitch.shareCount++)] = {
            static_cast<std::uint8_t>(wrapped(bin, kChromaBinCount)), cosine * cosine};
    }
    return pitch;
}

/// The nearest bin of the spectrum, as a number that always fits.
int binOf(double frequency, int sampleRate)
{
    return static_cast<int>(std::min(std::round(frequency * kFrameSize / sampleRate), double(kFrameSize)));
}

} // namespace

PitchMap::PitchMap(int sampleRate)
    : m_lowest(std::max(binOf(kLowestHz, sampleRate), 1))
    , m_top(std::min(binOf(kTopHz, sampleRate), int(kFrameSize / 2 - 1)))
{
    for (int bin = m_lowest; bin <= m_top; ++bin)
        m_pitches.push_back(pitchOf(double(bin) * sampleRate / kFrameSize));
}

} // namespace MusicalKeyAnalyzer
