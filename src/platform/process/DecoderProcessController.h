#pragma once

#include "platform/process/ChildProcess.h"
#include "platform/process/Descriptor.h"
#include "platform/process/WorkerClock.h"

#include <mutex>
#include <optional>
#include <stop_token>

/// Owns a running `ffmpeg`, waits for it and stops it. Destroyed while that runs, it kills it. Thread: any, and several
/// at a time; made and destroyed on the thread that waits for the child.
class DecoderProcessController {
public:
    /// How long to wait for a child and how often to look after it. The end of a child is noticed at once where the
    /// system can tell, a stop only at the next look.
    struct Patience {
        /// From the call of waitForEnd() on.
        async::Duration timeout;
        /// Between two looks at the stop request.
        async::Duration interval;
    };
    /// How a wait came to its end: the child ended by itself, whatever its status, or was ended here.
    enum class End { Ended, Stopped, TimedOut };

    /// Starts the child. Throws std::system_error when that is impossible.
    explicit DecoderProcessController(const ChildProcess::Launch& launch, WorkerClock clock = WorkerClock::system());

    /// As ChildProcess::isRunning().
    bool isRunning();
    /// Blocks until the child has ended. Calls stop() at a stop request and when the time is over; Stopped also where
    /// the request came with the end of the child.
    End waitForEnd(const Patience& patience, const std::stop_token& stopToken);
    /// Asks the child to end, and kills it if that has not helped after 0.25 s. Returns when it has gone, or 0.5 s
    /// after the kill.
    void stop();
    /// As ChildProcess::exitStatus().
    std::optional<int> exitStatus();

private:
    bool hasEndedWithin(async::Duration limit);

    std::mutex m_lock;
    ChildProcess m_process;
    const Descriptor m_end; ///< readable once the child has ended; not open where the system has no such thing
    const WorkerClock m_clock;
};
