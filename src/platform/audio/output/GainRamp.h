#pragma once

#include <cstdint>
#include <span>

/// A gain that moves in a straight line, frame by frame; 1 at the start. Thread: the device's callback: nothing in it
/// locks or allocates.
class GainRamp {
public:
    /// Factor of the frame that was last multiplied.
    float gain() const { return m_gain; }
    /// Whether the target is still to be reached.
    bool isMoving() const { return m_left > 0; }
    /// Frames until the target is reached; 0 while it stands still.
    int64_t framesLeft() const { return m_left; }

    /// Takes the gain at once.
    void set(float gain)
    {
        m_gain = m_target = gain;
        m_left = 0;
    }
    /// Moves from where it is now to \p gain within \p frames; 0 or less takes it at once.
    void moveTo(float gain, int64_t frames)
    {
        if (frames <= 0) {
            set(gain);
            return;
        }
        m_target = gain;
        m_left = frames;
        m_step = (gain - m_gain) / static_cast<float>(frames);
    }

    /// Multiplies stereo frames, interleaved, and moves on. A gain of exactly 1 leaves every bit as it was.
    void apply(std::span<float> stereo)
    {
        size_t index = 0;
        for (; m_left > 0 && index < stereo.size(); index += 2) {
            m_gain = --m_left == 0 ? m_target : m_gain + m_step;
            stereo[index] *= m_gain;
            stereo[index + 1] *= m_gain;
        }
        if (m_gain == 1.0F)
            return; // what is played at full volume reaches the device bit by bit as it was decoded
        for (; index < stereo.size(); ++index)
            stereo[index] *= m_gain;
    }

private:
    float m_gain = 1.0F;
    float m_target = 1.0F;
    float m_step = 0.0F;
    int64_t m_left = 0;
};
