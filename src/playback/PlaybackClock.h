#pragma once

/// The position that is shown, as a function of the output device's clock. All times in seconds.
namespace PlaybackClock {

/// A moment at which both clocks were read.
struct Anchor {
    double deviceTime; ///< on the device's clock
    double trackTime;  ///< in the track at that moment
};

/// The longest latency that is believed: what a device tells beyond it is an error of the driver. Chosen: far above a
/// wireless headphone's buffer chain as drivers report it.
constexpr double kLongestLatency = 0.25;

/// \p time kept within a track; 0 for what is no number.
double within(double time, double duration);
/// The track's position when the device's clock reads \p deviceTime, within the track. A clock that went back counts as
/// standing still.
double trackTime(const Anchor& anchor, double deviceTime, double duration);
/// A latency as the device tells it, made usable: 0 to kLongestLatency.
double usableLatency(double latency);
/// The part of the track that lies before \p time, 0 to 1; 0 for a track without length.
double fraction(double time, double duration);

} // namespace PlaybackClock
