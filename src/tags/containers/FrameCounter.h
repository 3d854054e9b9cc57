#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/StreamTags.h"

#include <algorithm>
#include <optional>

/// The walk over the frames of a stream that tells its length nowhere, for every coding whose frames begin with the
/// byte 255.
namespace FrameCounter {

/// One frame of sound as its header tells.
struct Frame {
    double seconds = 0;
    qint64 byteCount = 0; ///< with its header, at least 1
};

/// What was counted, or estimated from a part: the length, and the bytes of the frames alone.
struct Count {
    double seconds = 0;
    double bytes = 0;
};

/// The first offset within \p limit bytes from \p begin on at which a frame begins.
/// \param blockSize bytes looked at in one read. \param isFrame told the second byte and the offset.
template <typename IsFrame>
std::optional<qint64> nextOffset(const ByteRange& stream, qint64 begin, qint64 limit, qint64 blockSize, IsFrame isFrame)
{
    const qint64 end = begin + std::min(limit, stream.size() - begin);
    for (; begin < end && !stream.source->isRunningLow(); begin += blockSize) {
        const QByteArray block = stream.read(begin, blockSize + 1); // a sync may lie across the edge
        for (qsizetype index = block.indexOf('\xFF'); index >= 0 && index + 1 < block.size();
             index = block.indexOf('\xFF', index + 1)) {
            if (isFrame(static_cast<uchar>(block[index + 1]), begin + index))
                return begin + index;
        }
    }
    return std::nullopt;
}

/// Follows the frames from \p first to the end, over tags and damage in between. Where the bounds of reading end the
/// walk, the rest is taken to be like what was counted. \param frameAt an optional Frame at an offset. \param nextFrom
/// an optional offset of a frame, from an offset on and within a number of bytes.
template <typename FrameAt, typename NextFrom>
Count count(const ByteRange& stream, qint64 first, FrameAt frameAt, NextFrom nextFrom)
{
    constexpr int kFramesBetweenChecks = 256;
    constexpr qint64 kLongestGap = 64 * 1024 * 1024; // chosen: what stands behind more than this is another thing
    Count count;
    qint64 offset = first;
    for (qint64 frames = 0; offset < stream.size(); ++frames) {
        if (frames % kFramesBetweenChecks == 0 && offset > first && stream.source->isRunningLow()) {
            const double factor = static_cast<double>(stream.size() - first) / static_cast<double>(offset - first);
            return {count.seconds * factor, count.bytes * factor};
        }
        if (const std::optional<Frame> frame = frameAt(offset)) {
            count.seconds += frame->seconds;
            count.bytes += static_cast<double>(frame->byteCount);
            offset += frame->byteCount;
            continue;
        }
        const std::optional<qint64> next = nextFrom(StreamTags::endAfter(stream, offset), kLongestGap);
        if (!next)
            break;
        offset = *next;
    }
    return count;
}

} // namespace FrameCounter
