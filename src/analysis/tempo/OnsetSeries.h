#pragma once

#include "analysis/tempo/AnalysisConstants.h"
#include "analysis/tempo/Pace.h"

#include <array>
#include <span>
#include <vector>

namespace BPMAnalyzer {

/// The five onset series of one section, in the order of Series, one value a frame, equally long.
using OnsetSection = std::array<std::vector<float>, kSeriesCount>;

/// How strongly sounds begin in each frame of \p samples: by mel bands, in the bass, by energy, in the treble, and by
/// phase; each through normalizedOnset().
/// \param samples   mono, at 11,025 Hz. Fewer than one frame give empty series.
/// Errors: Error::Case::TransformUnavailable; async::Cancelled. Stop: polled every 16 frames.
OnsetSection spectralFluxEnvelope(std::span<const float> samples, Pace& pace);

/// The same before normalizedOnset(): all values finite and not negative.
OnsetSection rawOnsets(std::span<const float> samples, Pace& pace);

} // namespace BPMAnalyzer
