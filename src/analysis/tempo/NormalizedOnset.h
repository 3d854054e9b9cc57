#pragma once

#include <vector>

namespace BPMAnalyzer {

/// Takes the slow part out of a series of onset strengths, brings it to a scale of its own and presses down what is not
/// a local peak.
/// \param values   finite, not negative. \param rate   values a second.
/// \return         as many, 0 to 8; fewer than 5 values are returned as they are.
std::vector<float> normalizedOnset(std::vector<float> values, double rate);

} // namespace BPMAnalyzer
