#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace BPMAnalyzer {

/// The value at index trunc((count - 1) * share) of the sorted positive values; nothing when there is none.
/// \param share   0 to 1.
std::optional<float> positiveQuantile(std::span<const float> values, double share);

/// Whether none of the values from \p index - 2 to \p index + 2 is larger.
bool isLocalMaximum(std::span<const float> values, std::size_t index);

/// Indices of the local maxima that are at least the positiveQuantile() of \p share, in ascending order; of a plateau
/// the first index. Of more than \p maximumCount the strongest, on equal values the earlier ones.
std::vector<int> strongestPeaks(std::span<const float> values, double share, std::size_t maximumCount);

} // namespace BPMAnalyzer
