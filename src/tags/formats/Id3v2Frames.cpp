#include "tags/formats/Id3v2Frames.h"

#include "tags/bytes/ByteReader.h"

#include <algorithm>

#include <zlib.h>

namespace Id3v2 {

namespace {

bool isFrameID(QByteArrayView id)
{
    return !id.isEmpty() &&
           std::ranges::all_of(id, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
}

/// The id of a frame header. iTunes once wrote three-letter ids, filled up, into ID3v2.3 tags.
QByteArrayView frameID(QByteArrayView header, int majorVersion)
{
    QByteArrayView id = header.first(majorVersion == 2 ? 3 : 4);
    if (majorVersion == 3 && (id.endsWith('\0') || id.endsWith(' ')))
        id.chop(1);
    return id;
}

// Flag bits of the second flag byte. Source: ID3v2.3.0 section 3.3.1, ID3v2.4.0 section 4.1, id3.org.
void setFlags(Frame& frame, quint8 flags, bool isTagUnsynchronised)
{
    if (frame.isVersion4) {
        frame.isGrouped = flags & 0x40;
        frame.isCompressed = flags & 0x08;
        frame.isEncrypted = flags & 0x04;
        frame.isUnsynchronised = isTagUnsynchronised || flags & 0x02;
        frame.hasDataLength = flags & 0x01;
    } else {
        frame.isCompressed = flags & 0x80;
        frame.isEncrypted = flags & 0x40;
        frame.isGrouped = flags & 0x20;
        frame.hasDataLength = frame.isCompressed;
    }
}

} // namespace

QByteArray withoutUnsynchronisation(QByteArrayView bytes)
{
    QByteArray decoded;
    decoded.reserve(bytes.size());
    for (qsizetype index = 0; index < bytes.size(); ++index) {
        decoded.append(bytes[index]);
        if (bytes[index] == '\xFF' && index + 1 < bytes.size() && bytes[index + 1] == 0)
            ++index;
    }
    return decoded;
}

FrameWalker::FrameWalker(ByteRange frames, int majorVersion, bool isUnsynchronised)
    : m_frames(frames)
    , m_majorVersion(majorVersion)
    , m_isUnsynchronised(isUnsynchronised)
    , m_unpackBudget(frames.source->size())
{
}

std::optional<Frame> FrameWalker::next()
{
    const qint64 headerSize = m_majorVersion == 2 ? 6 : 10;
    const QByteArray header = m_frames.read(m_position, headerSize);
    if (header.size() < headerSize)
        return std::nullopt;
    Frame frame;
    frame.id = frameID(header, m_majorVersion).toByteArray();
    const qint64 bodyOffset = m_position + headerSize;
    const qint64 size = bodySize(header, bodyOffset);
    if (!isFrameID(frame.id) || size < 0)
        return std::nullopt;
    frame.body = m_frames.part(bodyOffset, size);
    frame.isVersion4 = m_majorVersion == 4;
    if (m_majorVersion > 2)
        setFlags(frame, static_cast<quint8>(header[9]), m_isUnsynchronised);
    m_position = bodyOffset + size;
    return frame;
}

/// Whether a tag could go on at this place: with its end, with padding or with another frame.
bool FrameWalker::mayFollow(qint64 offset) const
{
    if (offset == m_frames.size())
        return true;
    const QByteArray id = m_frames.read(offset, 4);
    return id.size() == 4 && (id.startsWith('\0') || isFrameID(frameID(id, m_majorVersion)));
}

/// -1 if the frame claims more than there is.
qint64 FrameWalker::bodySize(QByteArrayView header, qint64 bodyOffset) const
{
    const qint64 room = m_frames.size() - bodyOffset;
    ByteReader reader(header.sliced(m_majorVersion == 2 ? 3 : 4));
    if (m_majorVersion == 2) {
        const qint64 size = reader.u24be();
        return size <= room ? size : -1;
    }
    const qint64 plain = ByteReader(reader).u32be();
    const qint64 syncsafe = reader.syncsafe();
    // Programs have mixed up the two kinds of numbers, so the one that leads somewhere wins.
    const qint64 proper = m_majorVersion == 4 ? syncsafe : plain;
    const qint64 other = m_majorVersion == 4 ? plain : syncsafe;
    if (proper == other || (proper <= room && mayFollow(bodyOffset + proper)))
        return proper <= room ? proper : -1;
    if (other <= room && mayFollow(bodyOffset + other))
        return other;
    return proper <= room ? proper : -1;
}

QByteArray FrameWalker::content(const Frame& frame)
{
    if (frame.isEncrypted)
        return {};
    const QByteArray stored = frame.body.read(0, frame.body.size());
    ByteReader reader(stored);
    qint64 unpackedSize = 0;
    if (frame.isVersion4) {
        reader.skip(frame.isGrouped ? 1 : 0);
        unpackedSize = frame.hasDataLength ? reader.syncsafe() : 0;
    } else {
        unpackedSize = frame.hasDataLength ? reader.u32be() : 0;
        reader.skip(frame.isGrouped ? 1 : 0);
    }
    if (!frame.isUnsynchronised && !frame.isCompressed && reader.position() == 0)
        return stored;
    const QByteArrayView rest = reader.rest();
    const QByteArray bytes = frame.isUnsynchronised ? withoutUnsynchronisation(rest) : rest.toByteArray();
    return frame.isCompressed ? inflated(bytes, unpackedSize) : bytes;
}

QByteArray FrameWalker::inflated(QByteArrayView packed, qint64 size)
{
    if (size <= 0 || size > m_unpackBudget)
        return {};
    m_unpackBudget -= size;
    QByteArray unpacked(size, Qt::Uninitialized);
    uLongf length = static_cast<uLongf>(size);
    const int result = ::uncompress(reinterpret_cast<Bytef*>(unpacked.data()), &length,
                                    reinterpret_cast<const Bytef*>(packed.data()), static_cast<uLong>(packed.size()));
    return result == Z_OK ? unpacked.first(static_cast<qsizetype>(length)) : QByteArray();
}

} // namespace Id3v2
