#pragma once

#include "analysis/decoding/WorkerClock.h"
#include "platform/process/ChildProcess.h"

#include <memory>
#include <mutex>
#include <optional>

/// Owns a running decoder and stops it. Held by shared pointers, since whoever waits for the decoder and whoever stops
/// it may be on different threads. Destroyed while the decoder runs, it kills it. Thread: any.
class DecoderProcessController {
public:
    explicit DecoderProcessController(std::unique_ptr<ChildProcess> process, WorkerClock clock = WorkerClock::system());

    bool isRunning();
    /// Asks the decoder to end, and kills it if that has not helped after 0.25 s. Returns when it has gone, or 0.5 s
    /// after the kill.
    void stop();
    /// As ChildProcess::exitStatus().
    std::optional<int> exitStatus();

private:
    bool hasEndedWithin(async::Duration limit);

    std::mutex m_lock;
    const std::unique_ptr<ChildProcess> m_process;
    const WorkerClock m_clock;
};
