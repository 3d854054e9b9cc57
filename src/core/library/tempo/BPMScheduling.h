#pragma once

#include <QList>
#include <QString>
#include <QUuid>

/// How gently and how many at a time tempo analyses run.
struct BPMAnalysisSchedulingPolicy {
    bool lowImpact = false;          ///< analyses rest in between
    bool decoderLowPriority = false; ///< decoders give way to other programs
    int workerLimit = 2;

    bool operator==(const BPMAnalysisSchedulingPolicy&) const = default;
};

/// Decisions of the tempo workers: pure functions of values.
namespace BPMScheduling {

/// What else goes on.
struct Circumstances {
    bool isPlaying = false;
    bool isScrolling = false;
    bool isLoadingMetadata = false;
    bool areResourcesConstrained = false; ///< little power or much heat
    qsizetype queued = 0;                 ///< tracks queued or being analysed
};

BPMAnalysisSchedulingPolicy currentBPMSchedulingPolicy(const Circumstances& circumstances);

/// Whether a worker has to go where fewer are allowed than run: all but the one with the smallest text form.
bool leavesAsSurplus(const QUuid& own, const QList<QUuid>& running, int limit);

} // namespace BPMScheduling
