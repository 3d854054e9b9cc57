#include "core/library/kinds/WorkKinds.h"

namespace {

using async::Priority;

// Chosen: playing, scrolling and reading come first, and a step to the next track is no end of playing.
constexpr async::Duration kAfterStart = async::seconds(0.5);
constexpr async::Duration kAfterEnd = async::seconds(0.6);
constexpr async::Duration kMoment = async::seconds(0.05);

constexpr int kTempoWorkers = 2; // one decodes while the other computes
constexpr qsizetype kManyTempos = 2;

Allowance whileNothingPlays(const Circumstances& now, qsizetype)
{
    return {now.isPlaying ? 0 : 1, Priority::Background, Pace::Full};
}

Allowance oneGently(const Circumstances&, qsizetype)
{
    return {1, Priority::Background, Pace::Gentle};
}

Allowance besideTheUser(const Circumstances& now, qsizetype queued)
{
    const bool isInteractive = now.isPlaying || now.isScrolling;
    const bool givesWay = isInteractive || now.isReadingTags || queued >= kManyTempos;
    const bool isAlone = isInteractive || now.isReadingTags || now.isConstrained;
    return {isAlone ? 1 : kTempoWorkers, givesWay ? Priority::Background : Priority::Utility,
            isInteractive ? Pace::Gentle : Pace::Full};
}

} // namespace

namespace WorkKinds {

const WorkKind kMusicalKey{20, &whileNothingPlays, kSpectra, {}, kAfterEnd, "Определение тональности: %d из %d"};
const WorkKind kTempo{30, &besideTheUser, 0, kAfterStart, kMoment, "Анализ BPM: %d из %d"};
const WorkKind kWaveform{40, &oneGently, 0, {}, kAfterEnd, ""};

QList<std::pair<const char*, const WorkKind*>> all()
{
    return {{"key", &kMusicalKey}, {"tempo", &kTempo}, {"waveform", &kWaveform}};
}

} // namespace WorkKinds
