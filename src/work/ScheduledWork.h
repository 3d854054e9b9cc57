#pragma once

#include "work/WorkKind.h"

/// A queue as the Scheduler sees it. Thread: main.
class ScheduledWork {
public:
    virtual ~ScheduledWork() = default;

    /// The rule that the Scheduler asks before each step. The same object as long as the queue lives: it is sorted in
    /// by its rank once.
    virtual const WorkKind& kind() const = 0;
    /// Keys that wait or run.
    virtual qsizetype queuedCount() const = 0;
    /// Whether there is a key for beginNext(); those that run do not count.
    virtual bool isAnyWaiting() const = 0;
    /// Jobs that have not ended, stopped ones included.
    virtual int runningCount() const = 0;
    /// Whether a stopped job has not ended yet: nothing begins until it has.
    virtual bool isAnyEnding() const = 0;

    /// What one call of beginNext() did.
    enum class Step {
        /// A job runs for the key from now on.
        Began,
        Skipped, ///< a key that is not wanted any more has left
        Nothing, ///< what waits does not begin now
    };
    /// Begins the job of the key whose turn it is. Called only while isAnyWaiting() and not isAnyEnding().
    /// \return what became of the key; after Nothing the Scheduler asks again with the next change only.
    virtual Step beginNext(const Allowance& allowance) = 0;
    /// Asks every running job to stop, without waiting for it; the keys return to the front at once. Called again and
    /// again while the rule says 0: what was stopped before is left alone.
    virtual void stopAll() = 0;
    /// Stops what runs at another pace; the keys return to the front.
    virtual void stopOthersThan(Pace pace) = 0;
};
