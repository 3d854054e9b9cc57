#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

/// Stereo frames on their way from the decoder to the device. One thread writes, one reads; neither ever waits.
class SampleRing {
public:
    /// Left and right; all that goes to a device has two channels.
    static constexpr int kChannels = 2;

    /// Makes room and empties the ring. Only while neither side uses it.
    void reset(int64_t capacityFrames)
    {
        m_samples.resize(static_cast<size_t>(capacityFrames) * kChannels);
        m_capacity = capacityFrames;
        m_written.store(0, std::memory_order_relaxed);
        m_read.store(0, std::memory_order_relaxed);
    }

    /// Frames that fit; at least 1.
    int64_t capacity() const { return m_capacity; }
    /// Frames that wait. Reader: at least so many can be read.
    int64_t readable() const
    {
        return m_written.load(std::memory_order_acquire) - m_read.load(std::memory_order_relaxed);
    }
    /// Free frames. Writer: at least so many can be written.
    int64_t writable() const
    {
        return m_capacity - (m_written.load(std::memory_order_relaxed) - m_read.load(std::memory_order_acquire));
    }

    /// Writer: the longest stretch that can be written in one piece, interleaved; publish it with commit().
    std::span<float> writeSpan(int64_t frames)
    {
        const int64_t place = m_written.load(std::memory_order_relaxed) % m_capacity;
        const int64_t length = std::min({frames, writable(), m_capacity - place});
        return {m_samples.data() + place * kChannels, static_cast<size_t>(length) * kChannels};
    }
    /// Writer: the reader sees these frames from now on. \param frames at most what writeSpan() gave.
    void commit(int64_t frames)
    {
        m_written.store(m_written.load(std::memory_order_relaxed) + frames, std::memory_order_release);
    }

    /// Reader: the longest stretch that can be read in one piece; give it back with consume().
    std::span<const float> readSpan(int64_t frames) const
    {
        const int64_t place = m_read.load(std::memory_order_relaxed) % m_capacity;
        const int64_t length = std::min({frames, readable(), m_capacity - place});
        return {m_samples.data() + place * kChannels, static_cast<size_t>(length) * kChannels};
    }
    /// Reader: the writer may use the room again. \param frames at most what readSpan() gave.
    void consume(int64_t frames)
    {
        m_read.store(m_read.load(std::memory_order_relaxed) + frames, std::memory_order_release);
    }

private:
    std::vector<float> m_samples;
    int64_t m_capacity = 1;
    std::atomic<int64_t> m_written = 0; ///< frames since reset
    std::atomic<int64_t> m_read = 0;
};
