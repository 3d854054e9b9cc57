#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"

#include <functional>
#include <optional>

class AudioFilePlayer;

/// The delayed part of a seek in what sounds: the sound fades out, then the jump happens. Seeks that follow each other
/// closely share one fade and make one jump. Thread: main.
class SeekFade {
public:
    /// Seconds in which the sound fades out before the jump and in again behind it. Chosen: short enough to feel
    /// immediate, long enough that a bass note does not click; coming back may be slower than going.
    static constexpr double kFadeOut = 0.012;
    static constexpr double kFadeIn = 0.018;
    /// From the last request to the jump, seconds: the fade and a little for the device's block.
    static constexpr double kDelay = 0.014;

    using Jump = std::function<void(double target)>;

    /// \param clock outlives it
    explicit SeekFade(async::Clock& clock);

    /// Asks for a jump; replaces one that is pending. The gain stays at 0 for \p jump to raise. \param audio is
    /// playing. \param jump called once, when nothing is pending any more.
    void begin(AudioFilePlayer& audio, double target, Jump jump);
    /// Gives the pending jump up and leaves the gain to the caller. \return whether there was one.
    bool cancel();
    /// Seconds; there from begin() until the jump.
    const std::optional<double>& target() const { return m_target; }

private:
    async::Task<> jumpLater(Jump jump, std::stop_token stop);

    async::Clock& m_clock;
    std::optional<double> m_target;
    async::TaskSlot m_task;
};
