#pragma once

#include <QHash>
#include <QList>
#include <QSet>

#include <algorithm>
#include <unordered_map>

/// Where a key of a queue stands.
enum class WorkState {
    /// Not queued: never asked for, done, or withdrawn.
    None,
    /// Its turn has not come, or its job was stopped and begins anew.
    Waiting,
    Running, ///< and was not stopped
    Ending,  ///< its result is being taken over
};

/// How far work is, in keys. Nothing is to be told where both are equal.
struct WorkProgress {
    int done = 0;
    int total = 0;

    bool operator==(const WorkProgress&) const = default;
};

/// The keys of a queue in order, each once, with their states and failures. A value, held by a WorkQueue, which runs
/// the jobs; this class starts nothing. Key has qHash() and ==. Thread: main.
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
    /// These come before all others while they wait, the first of them first; keys of an earlier call lose that
    /// place. Keys that are not queued count from when they are appended.
    void prefer(const QList<Key>& keys) { m_preferred = keys; }
    /// Whether the last prefer() named it and it has not ended since.
    bool isPreferred(const Key& key) const { return m_preferred.contains(key); }

    /// The key whose turn it is. To be asked only while one waits.
    Key next() const
    {
        const auto preferred =
            std::ranges::find_if(m_preferred, [this](const Key& key) { return stateOf(key) == WorkState::Waiting; });
        return preferred == m_preferred.cend() ? m_waiting.first() : *preferred;
    }
    /// A waiting key runs from now on. Only for keys that wait.
    void take(const Key& key)
    {
        if (m_waiting.first() == key)
            m_waiting.removeFirst();
        else
            m_waiting.removeOne(key);
        m_entries.at(key).state = WorkState::Running;
    }
    /// The job of a key that was taken has ended and its result is looked at. std::out_of_range for a key that is not
    /// queued.
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
    /// Ends keys wherever they stand; they count no more. \param keys all of them queued, else progress() is wrong.
    void withdraw(const QSet<Key>& keys)
    {
        for (const Key& key : keys)
            finish(key);
        m_waiting.removeIf([&](const Key& key) { return keys.contains(key); });
        m_total -= static_cast<int>(keys.size());
    }

    /// Waiting, Running or Ending for a queued key, None for any other. Takes the same time however long the line is.
    WorkState stateOf(const Key& key) const
    {
        const auto entry = m_entries.find(key);
        return entry == m_entries.end() ? WorkState::None : entry->second.state;
    }
    bool isQueued(const Key& key) const { return m_entries.contains(key); }
    /// Keys in any state but None.
    qsizetype queuedCount() const { return static_cast<qsizetype>(m_entries.size()); }
    /// All keys in any state but None, in no order.
    QSet<Key> queued() const
    {
        QSet<Key> keys;
        for (const auto& [key, entry] : m_entries)
            keys.insert(key);
        return keys;
    }
    /// Waiting keys in the order in which they were appended or put back; those preferred are not moved in it.
    const QList<Key>& waiting() const { return m_waiting; }
    /// Ended keys and all keys since the line was last empty and something was appended, without the withdrawn ones.
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
