#pragma once

#include "analysis/key/Chroma.h"
#include "core/model/MusicalKey.h"

#include <array>
#include <span>

namespace MusicalKeyAnalyzer {

/// How well one key fits: a correlation, 1 for a perfect one.
struct KeyScore {
    MusicalKey key;
    double score = 0; ///< -1 to 1
};
/// Minor keys first, each mode from C upwards.
using KeyScores = std::array<KeyScore, 2 * kPitchClassCount>;

/// Correlation of two lists; 0 for empty ones, for those of unequal length, and where a list does not vary.
double pearsonCorrelation(std::span<const double> one, std::span<const double> other);
/// The best correlation with a plain template of any key.
double fitOfAnyKey(const PitchClasses& chroma);
/// How well each key's learned profile fits. \param bass   counts for a part of the score; null without.
KeyScores allKeyScores(const PitchClasses& chroma, const PitchClasses* bass);
/// The highest score, the first of equal ones.
const KeyScore& best(const KeyScores& scores);
/// How clearly the chroma speaks of a key, 0 to 1: how far it is from all pitches sounding alike, and how well it fits
/// its best key.
double tonalQuality(const PitchClasses& chroma);

} // namespace MusicalKeyAnalyzer
