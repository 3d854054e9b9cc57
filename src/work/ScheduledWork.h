#pragma once

#include "work/WorkKind.h"

/// A queue as the Scheduler sees it. Thread: main.
class ScheduledWork {
public:
    virtual ~ScheduledWork() = default;

    virtual const WorkKind& kind() const = 0;
    /// Keys that wait or run.
    virtual qsizetype queuedCount() const = 0;
    virtual bool isAnyWaiting() const = 0;
    /// Jobs that have not ended, stopped ones included.
    virtual int runningCount() const = 0;
    /// Whether a stopped job has not ended yet: nothing begins until it has.
    virtual bool isAnyEnding() const = 0;

    enum class Step {
        Began,
        Skipped, ///< a key that nobody wants any more has left
        Nothing, ///< what waits does not begin now
    };
    /// Begins the job of the key whose turn it is. Something waits when this is called.
    virtual Step beginNext(const Allowance& allowance) = 0;
    /// Stops what runs; the keys return to the front.
    virtual void stopAll() = 0;
    /// Stops what runs at another pace; the keys return to the front.
    virtual void stopOthersThan(Pace pace) = 0;
};
