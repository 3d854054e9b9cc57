#pragma once

#include "WaveformScrubber/decoding/WaitClock.h"
#include "platform/process/ChildProcess.h"
#include "platform/process/Descriptor.h"

#include <mutex>
#include <optional>

/// Owns the decoder that runs for one envelope and stops it. Destroyed while the decoder runs, it kills it. Thread:
/// any, and several at a time; made and destroyed on the thread that waits for the decoder.
class WaveformProcessController {
public:
    /// Starts the decoder. Throws std::system_error when that is impossible.
    explicit WaveformProcessController(const ChildProcess::Launch& launch, WaitClock clock = WaitClock::system());

    bool isRunning();
    /// Blocks for the duration, or until the decoder has ended where the system can tell.
    void wait(async::Duration duration);
    /// Asks the decoder to end, and kills it if that has not helped after 0.25 s. Returns when it has gone, or 0.5 s
    /// after the kill.
    void stop();
    /// As ChildProcess::exitStatus().
    std::optional<int> exitStatus();

private:
    bool hasEndedWithin(async::Duration limit);

    std::mutex m_lock;
    ChildProcess m_process;
    const Descriptor m_end; ///< readable once the decoder has ended; not open where the system has no such thing
    const WaitClock m_clock;
};
