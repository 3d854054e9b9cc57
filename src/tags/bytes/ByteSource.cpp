#include "tags/bytes/ByteSource.h"

#include <algorithm>
#include <cstring>

ByteSource::ByteSource(const ReadLimits& limits)
    : m_limits(limits)
{
}

bool ByteSource::hasSpent(int divisor) const
{
    const Clock::duration wallTime = Clock::now() - m_begin;
    return wallTime >= m_limits.wallTime / divisor || wallTime - m_waiting >= m_limits.ownTime / divisor ||
           m_readCount >= m_limits.readCount / divisor ||
           m_byteCount >= m_limits.byteCount / divisor + m_limits.timesSize * (size() / divisor);
}

qint64 ByteSource::readInto(qint64 offset, std::span<std::byte> target)
{
    if (offset < 0 || offset >= size() || target.empty())
        return 0;
    if (isExpired()) {
        m_wasCutShort = true;
        return 0;
    }
    const auto count = std::min<qint64>(static_cast<qint64>(target.size()), size() - offset);
    const qint64 filled = fill(offset, target.first(static_cast<std::size_t>(count)));
    ++m_readCount;
    m_byteCount += filled;
    return filled;
}

QByteArray ByteSource::read(qint64 offset, qint64 count)
{
    if (offset < 0 || offset >= size() || count <= 0)
        return {};
    QByteArray bytes(std::min(count, size() - offset), Qt::Uninitialized);
    bytes.truncate(
        readInto(offset, std::as_writable_bytes(std::span(bytes.data(), static_cast<std::size_t>(bytes.size())))));
    return bytes;
}

QByteArray ByteRange::read(qint64 offset, qint64 count) const
{
    const ByteRange wanted = part(offset, count);
    return wanted.size() > 0 ? source->read(wanted.begin, wanted.size()) : QByteArray();
}

ByteRange ByteRange::part(qint64 offset, qint64 count) const
{
    const qint64 first = begin + std::clamp<qint64>(offset, 0, size());
    return {source, first, first + std::clamp<qint64>(count, 0, end - first)};
}

MemoryBytes::MemoryBytes(QByteArray bytes, const ReadLimits& limits)
    : ByteSource(limits)
    , m_bytes(std::move(bytes))
{
}

qint64 MemoryBytes::fill(qint64 offset, std::span<std::byte> target)
{
    std::memcpy(target.data(), m_bytes.constData() + offset, target.size());
    return static_cast<qint64>(target.size());
}
