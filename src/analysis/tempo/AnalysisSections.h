#pragma once

#include "analysis/tempo/OnsetSeries.h"

namespace BPMAnalyzer {

/// Part of a track, in samples.
struct SectionRange {
    std::size_t start = 0;
    std::size_t length = 0;

    bool operator==(const SectionRange&) const = default;
};

/// Where the sections of a track of \p sampleCount samples lie: eight of 12 s that may overlap, or the whole track when
/// it is not longer than 36 s.
std::vector<SectionRange> sectionRanges(std::size_t sampleCount);

/// The onset series of all sections that are long enough, in the order of the track; none for a short one. When it is
/// cancelled, those that were done by then.
std::vector<OnsetSection> analysisSections(std::span<const float> samples, Pace& pace);

} // namespace BPMAnalyzer
