#pragma once

#include "analysis/tempo/AnalysisConstants.h"

#include <cmath>

namespace BPMAnalyzer {

/// The tempo of a lag, halved until it is at most 140 BPM when rounded: a whole number in value.
/// \param lag   frames, above 0.
inline double foldedTempo(double lag)
{
    constexpr double kFastest = 140;
    double tempo = kTempoConstant / lag;
    while (std::round(tempo) > kFastest)
        tempo /= 2;
    return std::round(tempo);
}

} // namespace BPMAnalyzer
