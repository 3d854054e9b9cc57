#pragma once

#include "core/model/TempoEstimate.h"

/// How gently a tempo analysis goes about its work.
struct BPMAnalysisMode {
    bool lowImpact = false;          ///< it rests every few milliseconds, so that playback and window stay smooth
    bool decoderLowPriority = false; ///< its decoder gives way to other programs
};

/// How a tempo analysis ended.
struct BPMAnalysisOutcome {
    /// Success and PermanentFailure are final; the queue tries a RetryableFailure once more.
    enum class Case {
        Success,          ///< there is an estimate
        RetryableFailure, ///< another try may succeed
        PermanentFailure, ///< another try would take as long and fail again
        Cancelled,        ///< it was stopped
    };

    Case which = Case::Cancelled;
    TempoEstimate estimate; ///< of Success
};
