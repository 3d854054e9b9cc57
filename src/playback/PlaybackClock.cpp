#include "playback/PlaybackClock.h"

#include <algorithm>
#include <cmath>

double PlaybackClock::within(double time, double duration)
{
    // A comparison with a value that is no number is false: such a time or duration gives 0.
    const double end = duration > 0 ? duration : 0;
    return time > 0 ? std::min(time, end) : 0;
}

double PlaybackClock::trackTime(const Anchor& anchor, double deviceTime, double duration)
{
    const double elapsed = std::max(0.0, deviceTime - anchor.deviceTime);
    return within(anchor.trackTime + elapsed, duration);
}

double PlaybackClock::usableLatency(double latency)
{
    return within(latency, kLongestLatency);
}

double PlaybackClock::fraction(double time, double duration)
{
    if (!(duration > 0) || !std::isfinite(duration))
        return 0;
    return std::clamp(within(time, duration) / duration, 0.0, 1.0);
}
