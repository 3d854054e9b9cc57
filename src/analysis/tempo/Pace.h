#pragma once

#include "analysis/tempo/CooperativeDSPBudget.h"
#include "async/Cancelled.h"

#include <stop_token>

namespace BPMAnalyzer {

/// When an estimation stops and when it rests; handed through all its loops. Loops that notice a stop return what they
/// have; throwIfCancelled() after them sees to it that nothing partial gets out.
struct Pace {
    std::stop_token stop;
    CooperativeDSPBudget budget;

    bool isCancelled() const { return stop.stop_requested(); }
    /// Errors: async::Cancelled.
    void throwIfCancelled() const
    {
        if (isCancelled())
            throw async::Cancelled();
    }
    /// Rests if it is time; see CooperativeDSPBudget. Does not look at the stop.
    void checkpoint(int index, int interval) { budget.checkpoint(index, interval); }
};

} // namespace BPMAnalyzer
