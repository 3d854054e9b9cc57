#include "core/library/tempo/BPMScheduling.h"

#include <algorithm>

namespace BPMScheduling {

namespace {

constexpr int kWorkers = 2; // one decodes while the other computes
constexpr qsizetype kManyQueued = 2;

} // namespace

BPMAnalysisSchedulingPolicy currentBPMSchedulingPolicy(const Circumstances& now)
{
    const bool isInteractive = now.isPlaying || now.isScrolling;
    const bool isHeldBack = isInteractive || now.isLoadingMetadata || now.areResourcesConstrained;
    return {isInteractive, isInteractive || now.isLoadingMetadata || now.queued >= kManyQueued,
            isHeldBack ? 1 : kWorkers};
}

bool leavesAsSurplus(const QUuid& own, const QList<QUuid>& running, int limit)
{
    const QString text = own.toString();
    return running.size() > limit &&
           std::ranges::any_of(running, [&](const QUuid& other) { return other.toString() < text; });
}

} // namespace BPMScheduling
