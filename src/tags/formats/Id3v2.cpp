#include "tags/formats/Id3v2.h"

#include "tags/bytes/ByteReader.h"
#include "tags/formats/Id3v2Fields.h"
#include "tags/formats/Id3v2Frames.h"

#include <ranges>
#include <vector>

namespace Id3v2 {

namespace {

/// Chosen: more tags in a row than this are stepped over unread.
constexpr std::size_t kMaximumTags = 16;

// Source: ID3v2.3.0 section 3.1, ID3v2.4.0 section 3.1, id3.org.
constexpr qint64 kHeaderSize = 10;
constexpr quint8 kUnsynchronised = 0x80;
constexpr quint8 kHasExtendedHeader = 0x40; ///< in ID3v2.2: compressed in a way that was never defined
constexpr quint8 kHasFooter = 0x10;

/// Size of the extended header at the begin of \p frames; 0 if it makes no sense.
qint64 extendedHeaderSize(const ByteRange& frames, int majorVersion)
{
    const QByteArray bytes = frames.read(0, 4);
    ByteReader reader(bytes);
    const qint64 size = majorVersion == 4 ? reader.syncsafe() : qint64(reader.u32be()) + 4;
    return size <= frames.size() ? size : 0;
}

void readFrames(ByteRange frames, int majorVersion, quint8 flags, ItemCollector& items)
{
    if (majorVersion > 2 && flags & kHasExtendedHeader)
        frames = frames.from(extendedHeaderSize(frames, majorVersion));
    FrameWalker walker(frames, majorVersion, flags & kUnsynchronised);
    while (const std::optional<Frame> frame = walker.next()) {
        if (isWanted(frame->id))
            addField(frame->id, walker.content(*frame), majorVersion, items);
    }
}

void readTag(const ByteRange& tag, ItemCollector& items)
{
    const QByteArray header = tag.read(0, kHeaderSize);
    if (header.size() < kHeaderSize)
        return; // the file shrank, or its reading was ended
    const int majorVersion = header[3];
    const auto flags = static_cast<quint8>(header[5]);
    if (majorVersion < 2 || majorVersion > 4 || (majorVersion == 2 && flags & kHasExtendedHeader))
        return;
    const ByteRange body = tag.from(kHeaderSize);
    if (majorVersion < 4 && flags & kUnsynchronised) {
        // Here frame sizes count the decoded bytes, so that all has to be decoded before it can be walked.
        MemoryBytes decoded(withoutUnsynchronisation(body.read(0, body.size())));
        readFrames(ByteRange::whole(decoded), majorVersion, flags & kHasExtendedHeader, items);
    } else {
        readFrames(body, majorVersion, flags, items);
    }
}

} // namespace

std::optional<qint64> tagSize(QByteArrayView header)
{
    ByteReader reader(header);
    const bool isTag = reader.bytes(3) == QByteArrayView("ID3");
    const QByteArrayView version = reader.bytes(2);
    const quint8 flags = reader.u8();
    const QByteArrayView size = reader.bytes(4);
    if (reader.hasFailed() || !isTag || version[0] == '\xFF' || version[1] == '\xFF')
        return std::nullopt;
    return kHeaderSize + ByteReader(size).syncsafe() + (flags & kHasFooter ? kHeaderSize : 0);
}

void read(ByteRange& range, ItemCollector& items)
{
    std::vector<ByteRange> tags;
    while (const std::optional<qint64> size = tagSize(range.read(0, kHeaderSize))) {
        if (tags.size() < kMaximumTags)
            tags.push_back(range.part(0, *size));
        range = range.from(*size);
    }
    for (const ByteRange& tag : std::views::reverse(tags))
        readTag(tag, items);
}

} // namespace Id3v2
