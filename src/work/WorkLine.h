#pragma once

#include <QHash>
#include <QList>
#include <QSet>

#include <algorithm>
#include <unordered_map>

enum class WorkState {
    None,
    Waiting,
    Running, ///< and was not stopped
    Ending,  ///< its result is being taken over
};

/// How far work is. Nothing is to be told where both are equal.
struct WorkProgress {
    int done = 0;
    int total = 0;

    bool operator==(const WorkProgress&) const = default;
};

/// The keys of a queue in order, each once, with their states and failures. A value. Thread: main.
template <typename Key>
class WorkLine {
public:
    /// Adds keys that are not queued at the end. \return these.
    QList<Key> append(const QList<Key>& keys)
    {
        if (m_entries.empty())
            m_total = 0;
        QList<Key> added;
        for (const Key& key : keys) {
            if (!m_entries.emplace(key, Entry{}).second)
                continue;
            m_waiting.append(key);
            added.append(key);
        }
        m_total += static_cast<int>(added.size());
        return added;
    }
    void prefer(const QList<Key>& keys) { m_preferred = keys; }
    bool isPreferred(const Key& key) const { return m_preferred.contains(key); }

    /// The key whose turn it is; one waits.
    Key next() const
    {
        const auto preferred =
            std::ranges::find_if(m_preferred, [this](const Key& key) { return stateOf(key) == WorkState::Waiting; });
        return preferred == m_preferred.cend() ? m_waiting.first() : *preferred;
    }
    /// A waiting key runs from now on.
    void take(const Key& key)
    {
        if (m_waiting.first() == key)
            m_waiting.removeFirst();
        else
            m_waiting.removeOne(key);
        m_entries.at(key).state = WorkState::Running;
    }
    void setEnding(const Key& key) { m_entries.at(key).state = WorkState::Ending; }
    /// Puts a key back that was taken; others are left alone.
    void putBack(const Key& key)
    {
        if (wait(key))
            m_waiting.prepend(key);
    }
    /// Puts a key that was taken back to the end, the first time; ends it the second time.
    void retry(const Key& key)
    {
        const auto entry = m_entries.find(key);
        if (entry == m_entries.end() || ++entry->second.failures > 1) {
            finish(key);
        } else if (wait(key)) {
            m_waiting.append(key);
            m_preferred.removeOne(key);
        }
    }
    /// Ends a key that was taken.
    void finish(const Key& key)
    {
        m_entries.erase(key);
        m_preferred.removeOne(key);
    }
    /// Ends queued keys wherever they stand; they count no more.
    void withdraw(const QSet<Key>& keys)
    {
        for (const Key& key : keys)
            finish(key);
        m_waiting.removeIf([&](const Key& key) { return keys.contains(key); });
        m_total -= static_cast<int>(keys.size());
    }

    WorkState stateOf(const Key& key) const
    {
        const auto entry = m_entries.find(key);
        return entry == m_entries.end() ? WorkState::None : entry->second.state;
    }
    bool isQueued(const Key& key) const { return m_entries.contains(key); }
    qsizetype queuedCount() const { return static_cast<qsizetype>(m_entries.size()); }
    QSet<Key> queued() const
    {
        QSet<Key> keys;
        for (const auto& [key, entry] : m_entries)
            keys.insert(key);
        return keys;
    }
    const QList<Key>& waiting() const { return m_waiting; }
    WorkProgress progress() const { return {m_total - static_cast<int>(m_entries.size()), m_total}; }

private:
    struct Entry {
        WorkState state = WorkState::Waiting;
        int failures = 0;
    };
    /// Not noexcept, so that the map keeps the hashes: growing by 100,000 files else hashes them all in one go.
    struct Hash {
        size_t operator()(const Key& key) const { return qHash(key); }
    };

    bool wait(const Key& key)
    {
        const auto entry = m_entries.find(key);
        if (entry == m_entries.end() || entry->second.state == WorkState::Waiting)
            return false;
        entry->second.state = WorkState::Waiting;
        return true;
    }

    QList<Key> m_waiting;
    std::unordered_map<Key, Entry, Hash> m_entries; ///< all that wait or run
    QList<Key> m_preferred;
    int m_total = 0;
};
