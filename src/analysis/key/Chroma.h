#pragma once

#include <array>

namespace MusicalKeyAnalyzer {

/// The notes of an octave, whatever their octave: C is 0, B is 11.
inline constexpr int kPitchClassCount = 12;
/// One value per pitch class, from C upwards.
using PitchClasses = std::array<double, kPitchClassCount>;

/// Three bins to a semitone: enough to tell music that is a third of a semitone off from music that is in tune.
inline constexpr int kBinsPerSemitone = 3;
/// 36: three for each pitch class.
inline constexpr int kChromaBinCount = kPitchClassCount * kBinsPerSemitone;
/// One value per bin; bin 3k is pitch class k in tune, the ones beside it are a third of a semitone below and above.
using ChromaBins = std::array<double, kChromaBinCount>;

/// \p index brought into 0 to \p count - 1.
constexpr int wrapped(int index, int count)
{
    const int rest = index % count;
    return rest < 0 ? rest + count : rest;
}

/// Makes the sum of the squares 1; a vector of length 0 stays as it is.
void normalize(PitchClasses& values);

} // namespace MusicalKeyAnalyzer
