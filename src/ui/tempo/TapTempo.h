#pragma once

#include "async/Clock.h"

#include <optional>
#include <vector>

/// The tempo of tapping along. A pause begins anew. A value; times are those of any monotonic clock.
class TapTempo {
public:
    static constexpr async::Duration kPause = async::seconds(2); ///< chosen: a beat of 30 BPM
    static constexpr int kLeastTaps = 4;                         ///< chosen: fewer say nothing
    static constexpr int kMostTaps = 32;                         ///< chosen: eight bars, so that a change is followed

    /// \param now in a monotonic time. A pause of kPause begins anew.
    void tap(async::Duration now);
    /// The next tap is the first again.
    void clear() { m_taps.clear(); }
    /// Taps since the last pause, kMostTaps at most.
    int count() const { return static_cast<int>(m_taps.size()); }
    /// Whole beats in a minute, 30 to 400; nothing before the fourth tap and outside that range.
    std::optional<int> bpm() const;

private:
    std::vector<async::Duration> m_taps; ///< ascending, without a pause between them
};
