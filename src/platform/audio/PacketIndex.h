#pragma once

#include <QtGlobal>

#include <optional>
#include <vector>

/// Where each packet of a bare stream of frames (MP3, ADTS) begins and what its time is, front to back: such a stream
/// has no clock of its own, so only a walk from its beginning tells the time of a packet exactly.
class PacketIndex {
public:
    /// Samples of a packet that are not to be heard.
    struct Trim {
        /// At the packet's begin and at its end, in samples of the file's rate.
        quint32 front = 0;
        quint32 back = 0;
        bool operator==(const Trim&) const = default;
    };

    struct Entry {
        qint64 offset = 0; ///< bytes from the file's beginning
        qint64 time = 0;   ///< in the stream's time base
    };

    /// Makes room for about that many packets.
    void reserve(qint64 count);
    /// Packets come in ascending order; one that does not is passed over.
    void append(qint64 offset, qint64 time, const Trim& trim);
    /// Time behind the last packet.
    void setEnd(qint64 time) { m_end = time; }

    /// Whether no packet was found; startFor() must not be asked then.
    bool isEmpty() const { return m_entries.empty(); }
    /// As set by setEnd(), in the stream's time base; 0 before.
    qint64 end() const { return m_end; }
    /// The last packet from which a decoder has gathered all it needs when it comes to \p time: enough packets and
    /// enough bytes for a reservoir of bits before it. Early times give the first packet. The index is not empty.
    const Entry& startFor(qint64 time) const;
    /// The packet that begins at that offset in bytes; nothing where none begins exactly there.
    std::optional<Entry> at(qint64 offset) const;
    /// What is not to be heard of the packet at that offset; zeros for one without a trim.
    Trim trimAt(qint64 offset) const;

private:
    struct Trimmed {
        qint64 offset;
        Trim trim;
    };

    std::vector<Entry> m_entries;
    std::vector<Trimmed> m_trimmed;
    qint64 m_end = 0;
};
