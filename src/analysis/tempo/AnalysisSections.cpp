#include "analysis/tempo/AnalysisSections.h"

#include "analysis/tempo/BPMError.h"

#include <algorithm>
#include <cmath>

namespace BPMAnalyzer {

namespace {

// Chosen: docs/tempo.md, section 1. In samples, the last in frames.
constexpr std::size_t kWholeTrackLimit = std::size_t(kSampleRate) * 36;
constexpr std::size_t kSectionLength = std::size_t(kSampleRate) * 12;
constexpr std::size_t kSmallestLength = std::size_t(kFrameSize) * 8;
constexpr std::size_t kSmallestSeries = 101;
/// Where sections start, as parts of the way that a section can be moved: intro and outro, and an even walk between.
constexpr std::array kStarts{0.05, 0.18, 0.31, 0.44, 0.57, 0.70, 0.83, 0.95};

} // namespace

std::vector<SectionRange> sectionRanges(std::size_t sampleCount)
{
    if (sampleCount <= kWholeTrackLimit)
        return {{.start = 0, .length = sampleCount}};
    const std::size_t space = sampleCount - kSectionLength;
    std::vector<SectionRange> ranges;
    for (const double part : kStarts)
        ranges.push_back({static_cast<std::size_t>(std::llround(part * double(space))), kSectionLength});
    return ranges;
}

std::vector<OnsetSection> analysisSections(std::span<const float> samples, Pace& pace)
{
    std::vector<OnsetSection> sections;
    for (const SectionRange& range : sectionRanges(samples.size())) {
        if (pace.isCancelled())
            break;
        if (range.length < kSmallestLength)
            continue;
        try {
            OnsetSection section = spectralFluxEnvelope(samples.subspan(range.start, range.length), pace);
            if (std::ranges::all_of(section, [](const auto& series) { return series.size() >= kSmallestSeries; }))
                sections.push_back(std::move(section));
        } catch (const Error&) {
            // The other sections may do better.
        } catch (const async::Cancelled&) {
            break;
        }
    }
    return sections;
}

} // namespace BPMAnalyzer
