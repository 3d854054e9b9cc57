#pragma once

#include <cstdint>
#include <span>

/// A gain that moves in a straight line, frame by frame.
class GainRamp {
public:
    float gain() const { return m_gain; }
    bool isMoving() const { return m_left > 0; }
    int64_t framesLeft() const { return m_left; }

    void set(float gain)
    {
        m_gain = m_target = gain;
        m_left = 0;
    }
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

    /// Multiplies stereo frames and moves on.
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
