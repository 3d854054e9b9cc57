#include "tags/writing/RewriteSource.h"

#include "tags/writing/WriteErrors.h"

#include <algorithm>
#include <limits>

namespace {

ReadLimits unlimited()
{
    constexpr qint64 kNoLimit = std::numeric_limits<qint64>::max() / 8; // leaves room for the sums
    ReadLimits limits;
    limits.ownTime = limits.wallTime = std::chrono::hours(24 * 365);
    limits.readCount = kNoLimit;
    limits.timesSize = 0;
    limits.byteCount = kNoLimit;
    return limits;
}

} // namespace

RewriteSource::RewriteSource(ByteSource& bytes, const QString& path)
    : m_bytes(bytes)
    , m_size(bytes.size())
    , m_path(path)
{
}

QByteArray RewriteSource::read(qint64 offset, qint64 count) const
{
    requireWithin(m_size, offset, count);
    QByteArray bytes = m_bytes.read(offset, count);
    if (bytes.size() != count)
        failCorrupt();
    return bytes;
}

bool RewriteSource::contains(const QByteArray& needle, qint64 offset, qint64 length) const
{
    constexpr qint64 kPieceSize = 1024 * 1024;
    const qint64 end = offset + length;
    if (needle.isEmpty())
        return false;
    for (qint64 begin = offset; end - begin >= needle.size(); begin += kPieceSize) {
        // Each piece reaches so far into the next one that no occurrence is cut in two.
        const qint64 count = std::min<qint64>(kPieceSize + needle.size() - 1, end - begin);
        if (read(begin, count).contains(needle))
            return true;
    }
    return false;
}

void RewriteSource::requireWithin(qint64 end, qint64 offset, qint64 length) const
{
    if (offset < 0 || length < 0 || offset > end || length > end - offset)
        failCorrupt();
}

void RewriteSource::failCorrupt() const
{
    throw FileError(FileError::Case::fileReadCorruptFile, m_path);
}

SourceBytes::SourceBytes(qint64 size, Read read)
    : ByteSource(unlimited())
    , m_size(size)
    , m_read(std::move(read))
{
}

qint64 SourceBytes::fill(qint64 offset, std::span<std::byte> target)
{
    const QByteArray bytes = m_read(offset, static_cast<qint64>(target.size()));
    std::copy_n(reinterpret_cast<const std::byte*>(bytes.constData()), bytes.size(), target.begin());
    return bytes.size();
}
