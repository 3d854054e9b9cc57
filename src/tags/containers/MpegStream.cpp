#include "tags/containers/MpegStream.h"

#include "tags/containers/FrameCounter.h"
#include "tags/containers/TagLibFile.h"

#include <taglib/mpegheader.h>
#include <taglib/xingheader.h>

#include <algorithm>
#include <array>
#include <cmath>

// 1. The first frame is the first header that another one follows at the distance it tells.
// 2. A Xing, Info or VBRI header in it counts frames and bytes.
// 3. Without one, frames at three places are compared: if all have one bit rate, the size gives the length.
// 4. If not, all frames are counted, over tags and damage in between.

namespace MpegStream {

namespace {

using TagLib::MPEG::Header;

/// Chosen: junk and padding in front of the sound are some kilobytes at most.
constexpr qint64 kSearchLimit = 1024 * 1024;
/// Chosen: one second of sound; an encoder that varies the rate does so within it, but for silence.
constexpr int kFramesToCompare = 40;

/// The first offset within \p limit bytes from \p begin on at which a header stands that another one follows.
std::optional<qint64> nextFrameOffset(const ByteRange& stream, TagLibFile& file, qint64 begin, qint64 limit)
{
    constexpr qint64 kBlockSize = 4096; // most streams begin with a frame at once
    return FrameCounter::nextOffset(stream, begin, limit, kBlockSize, [&](uchar second, qint64 offset) {
        return (second & 0xE0) == 0xE0 && Header(&file, offset).isValid();
    });
}

FrameCounter::Count countFrames(const ByteRange& stream, TagLibFile& file, qint64 first)
{
    const auto frameAt = [&](qint64 offset) -> std::optional<FrameCounter::Frame> {
        const Header header(&file, offset, false);
        if (!header.isValid() || header.frameLength() <= 0 || header.sampleRate() <= 0)
            return std::nullopt;
        return FrameCounter::Frame{static_cast<double>(header.samplesPerFrame()) / header.sampleRate(),
                                   header.frameLength()};
    };
    return FrameCounter::count(stream, first, frameAt,
                               [&](qint64 begin, qint64 limit) { return nextFrameOffset(stream, file, begin, limit); });
}

/// Whether some frames from \p offset on have this bit rate.
bool hasBitRate(TagLibFile& file, qint64 offset, int bitRate)
{
    for (int index = 0; index < kFramesToCompare; ++index) {
        const Header header(&file, offset, false);
        if (!header.isValid() || header.frameLength() <= 0)
            break;
        if (header.bitrate() != bitRate)
            return false;
        offset += header.frameLength();
    }
    return true;
}

/// Whether frames at the begin, in the middle and behind it have one bit rate: many files begin with silence.
bool hasOneBitRate(const ByteRange& stream, TagLibFile& file, qint64 first, const Header& header)
{
    if (!hasBitRate(file, first, header.bitrate()))
        return false;
    const qint64 size = stream.size() - first;
    if (size < qint64{2} * kFramesToCompare * header.frameLength())
        return true;
    return std::ranges::all_of(std::array{size / 2, size / 4 * 3}, [&](qint64 place) {
        constexpr qint64 kNearby = 16 * 1024; // chosen: several frames of any kind
        const std::optional<qint64> offset = nextFrameOffset(stream, file, first + place, kNearby);
        return offset && hasBitRate(file, *offset, header.bitrate());
    });
}

/// Average bits per second. Whole kilobits of the first frame's header where the average is nothing but that, since the
/// parts of a constant rate do not divide evenly.
double averageBitRate(double bytes, double seconds, const Header& header)
{
    const double average = bytes * 8 / seconds;
    return std::lround(average / 1000) == header.bitrate() ? header.bitrate() * 1000.0 : average;
}

} // namespace

std::optional<Sound> read(const ByteRange& stream)
{
    TagLibStream bytes(stream);
    TagLibFile file(bytes);
    const std::optional<qint64> offset = nextFrameOffset(stream, file, 0, kSearchLimit);
    if (!offset)
        return std::nullopt;
    const Header header(&file, *offset);
    Sound sound;
    const double byteCount = static_cast<double>(stream.size() - *offset);
    sound.details.audioDataByteCount = static_cast<quint64>(byteCount);
    if (header.sampleRate() <= 0 || header.bitrate() <= 0)
        return sound;

    file.seek(*offset);
    const TagLib::MPEG::XingHeader summary(file.readBlock(header.frameLength()));
    if (summary.isValid() && summary.totalFrames() > 0) {
        sound.seconds = double(summary.totalFrames()) * header.samplesPerFrame() / header.sampleRate();
        // The size counts the frame that holds the summary, which is no sound.
        const double coded = double(summary.totalSize()) - header.frameLength();
        sound.details.bitRate = averageBitRate(coded > 0 ? coded : byteCount, *sound.seconds, header);
    } else if (hasOneBitRate(stream, file, *offset, header)) {
        sound.seconds = byteCount * 8 / (header.bitrate() * 1000.0);
        sound.details.bitRate = header.bitrate() * 1000.0;
    } else {
        const FrameCounter::Count all = countFrames(stream, file, *offset);
        sound.seconds = all.seconds;
        if (all.seconds > 0)
            sound.details.bitRate = averageBitRate(all.bytes, all.seconds, header);
    }
    return sound;
}

} // namespace MpegStream
