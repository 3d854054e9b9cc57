#include "tags/keeping/Id3v2Walk.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/TagSizes.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>
#include <limits>

namespace {

// Flags of a tag. Source: ID3v2.2.0 section 3.1, ID3v2.3.0 section 3.1, ID3v2.4.0 section 3.1.
constexpr quint8 kUnsynchronised = 0x80;
constexpr quint8 kHasExtendedHeader = 0x40; ///< in ID3v2.2: compressed in a way that was never defined
constexpr quint8 kHasFooter = 0x10;
constexpr quint8 kKnownFlags[] = {0x80, 0xE0, 0xF0}; ///< from ID3v2.2 on

/// Of the second flag byte of an ID3v2.4 frame, section 4.1.2.
constexpr char kFrameUnsynchronised = 0x02;

/// A tag in memory costs nothing worth limiting.
ReadLimits noLimits()
{
    ReadLimits limits;
    limits.ownTime = limits.wallTime = std::chrono::hours(24);
    limits.readCount = limits.byteCount = std::numeric_limits<qint64>::max() / 8;
    return limits;
}

} // namespace

Id3v2Walk::Id3v2Walk(const ByteRange& file, const QString& path)
    : m_path(path)
{
    readHeader(file);
}

void Id3v2Walk::failCorrupt() const
{
    throw FileError(FileError::Case::fileReadCorruptFile, m_path);
}

void Id3v2Walk::readHeader(const ByteRange& file)
{
    const QByteArray header = file.read(0, TagSizes::kId3HeaderSize);
    const bool isKnown = TagSizes::isId3Header(header) && header[3] >= 2 && header[3] <= 4;
    if (!isKnown)
        throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("ID3"));
    m_version = header[3];
    m_flags = static_cast<quint8>(header[5]);
    if (m_flags & ~kKnownFlags[m_version - 2])
        throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("ID3"));
    const std::optional<quint32> bodySize = TagSizes::syncsafe(header.sliced(6));
    if (!bodySize)
        failCorrupt();
    m_size = TagSizes::kId3HeaderSize + *bodySize + (has(kHasFooter) ? TagSizes::kId3HeaderSize : 0);
    if (m_size > file.size())
        failCorrupt();
    m_body = file.part(TagSizes::kId3HeaderSize, *bodySize);
}

/// The frames without the extended header, which holds nothing but figures about the tag.
ByteRange Id3v2Walk::framesIn(const ByteRange& body) const
{
    if (m_version == 2 || !has(kHasExtendedHeader))
        return body;
    const QByteArray bytes = body.read(0, 4);
    ByteReader reader(bytes);
    const qint64 size = m_version == 4 ? reader.syncsafe() : qint64(reader.u32be()) + 4;
    if (reader.hasFailed() || size < 4 || size > body.size())
        failCorrupt();
    return body.from(size);
}

void Id3v2Walk::forEach(const std::function<void(const Frame&)>& visit) const
{
    if (m_version == 4 || !has(kUnsynchronised))
        return forEachIn(framesIn(m_body), visit);
    // Here frame sizes count the decoded bytes, so that all has to be decoded before it can be walked.
    MemoryBytes decoded(Id3v2::withoutUnsynchronisation(m_body.read(0, m_body.size())), noLimits());
    forEachIn(framesIn(ByteRange::whole(decoded)), visit);
}

void Id3v2Walk::forEachIn(const ByteRange& frames, const std::function<void(const Frame&)>& visit) const
{
    const qint64 headerSize = m_version == 2 ? 6 : 10;
    Id3v2::FrameWalker walker(frames, m_version, m_version == 4 && has(kUnsynchronised));
    qint64 end = 0;
    while (std::optional<Id3v2::Frame> parts = walker.next()) {
        const qint64 begin = parts->body.begin - frames.begin - headerSize;
        Frame frame{*parts, frames.read(begin, headerSize), walker.content(*parts)};
        visit(frame);
        end = parts->body.end - frames.begin;
    }
    const QByteArray rest = frames.read(end, frames.size() - end);
    if (std::ranges::any_of(rest, [](char byte) { return byte != '\0'; }))
        failCorrupt();
}

QByteArray Id3v2Walk::kept(const Frame& frame) const
{
    const QByteArray body = frame.parts.body.read(0, frame.parts.body.size());
    const auto size = static_cast<quint32>(body.size());
    if (m_version == 2)
        return frame.header.first(3) + ByteOrder::big24(size) + body;
    QByteArray flags = frame.header.last(2);
    if (m_version == 4 && has(kUnsynchronised)) // the tag's flag goes, since new frames are not made so
        flags[1] = static_cast<char>(flags[1] | kFrameUnsynchronised);
    return frame.header.first(4) + (m_version == 3 ? ByteOrder::big32(size) : ByteOrder::syncsafe(size)) + flags + body;
}
