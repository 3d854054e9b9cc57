#include "tags/containers/StreamTags.h"

#include "tags/bytes/ByteReader.h"

namespace StreamTags {

namespace {

/// Bytes of the tag that begins with \p head; 0 for anything else. Source: ID3v2.4.0, 3.1; the layout of ID3v1.
qint64 tagSize(const QByteArray& head)
{
    constexpr qint64 kVersion1Size = 128;
    constexpr qint64 kHeaderSize = 10;
    constexpr quint8 kHasFooter = 0x10;
    if (head.startsWith("TAG"))
        return kVersion1Size;
    ByteReader reader(head);
    if (reader.bytes(3) != QByteArrayView("ID3"))
        return 0;
    reader.skip(2); // version
    const quint8 flags = reader.u8();
    const qint64 size = reader.syncsafe();
    return reader.hasFailed() ? 0 : kHeaderSize + size + (flags & kHasFooter ? kHeaderSize : 0);
}

} // namespace

qint64 endAfter(const ByteRange& stream, qint64 offset)
{
    qint64 size = tagSize(stream.read(offset, 10));
    while (size > 0 && offset + size <= stream.size()) {
        offset += size;
        size = tagSize(stream.read(offset, 10));
    }
    return offset;
}

} // namespace StreamTags
