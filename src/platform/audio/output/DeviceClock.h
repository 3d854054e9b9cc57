#pragma once

#include "platform/audio/output/LatestValue.h"

#include <cstdint>

/// What one turn of the device leaves for the clock. Times in seconds.
struct DeviceTurn {
    double soundBefore = 0; ///< sound that had gone out when the turn began
    double soundAfter = 0;  ///< … when it ended
    double time = 0;        ///< of the turn's begin, on DeviceClock::systemSeconds()
};

/// Counts the sound that has gone to the device, smoothly between its turns. It follows the frames that were really
/// handed over, so it neither drifts against what is heard nor runs on while the decoder has nothing to give. Written
/// by the device's callback, read on the main thread.
class DeviceClock {
public:
    /// The system's monotonic clock, in seconds since a fixed point. Never blocks. Thread: any.
    static double systemSeconds();

    /// Callback: tells of a turn, also of one without sound. Never blocks.
    void tell(const DeviceTurn& turn) { m_turns.write(turn); }
    /// Seconds of sound so far; never goes back. It follows what the callback tells within 0.2 s, and at once where
    /// that is 80 ms or more away. Thread: one, the main thread.
    double now() { return at(systemSeconds()); }
    /// The same for a moment of the system's clock; for tests.
    double at(double systemTime);

private:
    LatestValue<DeviceTurn> m_turns;
    double m_shown = 0;
    double m_shownAt = 0; ///< system time of m_shown
};
