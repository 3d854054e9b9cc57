#pragma once

#include <array>
#include <atomic>

/// Hands the newest of a series of values from one thread to another; older ones are lost. Neither side ever waits:
/// of three slots one is written, one is read, and the third is exchanged in one step. One thread writes, one reads.
/// T is copied by assignment, which must not allocate where that matters.
template <typename T>
class LatestValue {
public:
    explicit LatestValue(const T& initial = {})
        : m_slots{initial, initial, initial}
    {
    }

    /// Writer: replaces what was not read yet.
    void write(const T& value)
    {
        m_slots[m_back] = value;
        m_back = m_middle.exchange(m_back | kFresh, std::memory_order_acq_rel) & kIndex;
    }

    /// Reader: the newest value, the initial one before the first write. Valid until the next call.
    const T& read()
    {
        if (m_middle.load(std::memory_order_relaxed) & kFresh)
            m_front = m_middle.exchange(m_front, std::memory_order_acq_rel) & kIndex;
        return m_slots[m_front];
    }

private:
    static constexpr unsigned kIndex = 3;
    static constexpr unsigned kFresh = 4;

    std::array<T, 3> m_slots;
    unsigned m_back = 0;
    std::atomic<unsigned> m_middle = 1;
    unsigned m_front = 2;
};
