#include "analysis/key/Chroma.h"

#include <cmath>

namespace MusicalKeyAnalyzer {

void normalize(PitchClasses& values)
{
    double squares = 0;
    for (const double value : values)
        squares += value * value;
    if (!(squares > 0))
        return;
    const double length = std::sqrt(squares);
    for (double& value : values)
        value /= length;
}

} // namespace MusicalKeyAnalyzer
