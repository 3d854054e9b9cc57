#include "platform/audio/PacketIndex.h"

#include <algorithm>

namespace {

// An MP3 frame borrows up to 511 bytes of sound data from the frames before it (ISO 11172-3, main_data_begin), and its
// filter bank overlaps with one frame more. Chosen with room, since headers and side information lie between.
constexpr qint64 kRunUpBytes = 2048;
constexpr std::ptrdiff_t kRunUpPackets = 6;
/// At 8 kbit/s a frame holds a handful of bytes beyond its header.
constexpr std::ptrdiff_t kMostRunUpPackets = 120;

} // namespace

void PacketIndex::reserve(qint64 count)
{
    // A small first frame says little about those behind it.
    constexpr qint64 kMostReserved = 400'000;
    m_entries.reserve(static_cast<size_t>(std::clamp<qint64>(count, 0, kMostReserved)));
}

void PacketIndex::append(qint64 offset, qint64 time, const Trim& trim)
{
    if (!m_entries.empty() && offset <= m_entries.back().offset)
        return;
    m_entries.push_back({offset, time});
    if (trim != Trim())
        m_trimmed.push_back({offset, trim});
}

const PacketIndex::Entry& PacketIndex::startFor(qint64 time) const
{
    const auto after = std::ranges::upper_bound(m_entries, time, {}, &Entry::time);
    const auto first = m_entries.begin();
    const auto target = after == first ? first : after - 1;
    auto start = target;
    while (start != first && target - start < kMostRunUpPackets &&
           (target - start < kRunUpPackets || target->offset - start->offset < kRunUpBytes))
        --start;
    return *start;
}

std::optional<PacketIndex::Entry> PacketIndex::at(qint64 offset) const
{
    const auto found = std::ranges::lower_bound(m_entries, offset, {}, &Entry::offset);
    return found != m_entries.end() && found->offset == offset ? std::optional(*found) : std::nullopt;
}

PacketIndex::Trim PacketIndex::trimAt(qint64 offset) const
{
    const auto found = std::ranges::lower_bound(m_trimmed, offset, {}, &Trimmed::offset);
    return found != m_trimmed.end() && found->offset == offset ? found->trim : Trim();
}
