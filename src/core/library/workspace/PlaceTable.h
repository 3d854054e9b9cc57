#pragma once

#include "core/model/Track.h"

#include <bit>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

/// Finds the row of a key: an open-addressing table with the keys in it, so that a search touches no track. 100,000
/// rows are entered within a few milliseconds. \tparam Key holds at least 64 random or well-mixed bits.
template <typename Key>
class PlaceTable {
public:
    /// The row entered first for a key.
    std::optional<int> find(const Key& key) const
    {
        if (m_slots.empty())
            return std::nullopt;
        const size_t mask = m_slots.size() - 1;
        for (size_t place = home(key); m_slots[place].row != kFree; place = (place + 1) & mask) {
            if (m_slots[place].key == key)
                return m_slots[place].row;
        }
        return std::nullopt;
    }

    /// Enters the rows from count() up to \p size. \param keyOf gives the key of a row.
    template <typename KeyOf>
    void extend(int size, KeyOf keyOf)
    {
        if (m_count == size)
            return;
        if (const size_t needed = size_t(size) * kLoadDivisor; needed > m_slots.size())
            grow(std::bit_ceil(needed));
        for (; m_count < size; ++m_count)
            enter({keyOf(m_count), m_count});
    }

    /// Rows entered.
    int count() const { return m_count; }

    /// Forgets all rows.
    void clear()
    {
        m_slots.clear();
        m_count = 0;
    }

private:
    static constexpr int kFree = -1;
    static constexpr size_t kLoadDivisor = 2; // at most half full: runs of used slots stay short
    struct Slot {
        Key key{};
        int row = kFree;
    };

    /// Where the search for a key begins: the top bits of a product (Fibonacci hashing), into which all bits of the key
    /// went; the fixed bits of a UUID do no harm there.
    size_t home(const Key& key) const
    {
        quint64 bits = 0;
        if constexpr (sizeof(Key) > sizeof bits) {
            quint64 parts[2];
            static_assert(sizeof parts == sizeof(Key));
            std::memcpy(parts, &key, sizeof parts);
            bits = parts[0] ^ std::rotl(parts[1], 29);
        } else {
            bits = key;
        }
        return size_t((bits * 0x9e3779b97f4a7c15u) >> m_shift);
    }

    /// Puts a row at the first free slot from its home on; there is always one.
    void enter(const Slot& entered)
    {
        const size_t mask = m_slots.size() - 1;
        size_t place = home(entered.key);
        while (m_slots[place].row != kFree) {
            if (m_slots[place].key == entered.key)
                return; // the first stays
            place = (place + 1) & mask;
        }
        m_slots[place] = entered;
    }

    /// Enters all rows again into so many slots. \param capacity a power of two, at least two.
    void grow(size_t capacity)
    {
        const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(capacity));
        m_shift = 64 - std::countr_zero(capacity);
        for (const Slot& slot : old) {
            if (slot.row != kFree)
                enter(slot);
        }
    }

    std::vector<Slot> m_slots; // the size is a power of two, at least two
    int m_shift = 63;
    int m_count = 0;
};
