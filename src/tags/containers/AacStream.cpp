#include "tags/containers/AacStream.h"

#include "tags/bytes/ByteReader.h"
#include "tags/containers/FrameCounter.h"

#include <algorithm>
#include <array>

namespace AacStream {

namespace {

/// The header in front of each frame. Source: ISO/IEC 13818-7, 6.2 and table 35.
struct FrameHeader {
    static constexpr qint64 kSize = 7;
    static constexpr int kSamplesPerBlock = 1024;

    int sampleRate = 0;
    int samples = 0;
    qint64 byteCount = 0; ///< of the frame with its header
};

constexpr std::array kSampleRates{96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                  22050, 16000, 12000, 11025, 8000,  7350};

std::optional<FrameHeader> frameHeader(QByteArrayView bytes)
{
    ByteReader reader(bytes);
    const quint16 sync = reader.u16be(); // 12 bits sync, version, 2 bits layer, protection
    const quint8 form = reader.u8();     // 2 bits profile, 4 bits sample rate, private, channels
    const quint32 lengths = reader.u32be();
    const auto rateIndex = static_cast<std::size_t>(form >> 2 & 0xf);
    if (reader.hasFailed() || (sync & 0xFFF6) != 0xFFF0 || rateIndex >= kSampleRates.size())
        return std::nullopt;
    FrameHeader header;
    header.sampleRate = kSampleRates[rateIndex];
    header.byteCount = lengths >> 13 & 0x1fff; // behind 6 bits of form, before 11 of fullness and 2 of blocks
    header.samples = static_cast<int>((lengths & 3) + 1) * FrameHeader::kSamplesPerBlock;
    return header.byteCount >= FrameHeader::kSize ? std::optional(header) : std::nullopt;
}

std::optional<FrameHeader> headerAt(const ByteRange& stream, qint64 offset)
{
    return frameHeader(stream.read(offset, FrameHeader::kSize));
}

/// Whether the end or a frame of the same kind follows the one at \p offset.
bool isFrameAt(const ByteRange& stream, qint64 offset)
{
    const std::optional<FrameHeader> header = headerAt(stream, offset);
    if (!header)
        return false;
    const qint64 end = offset + header->byteCount;
    const std::optional<FrameHeader> next = headerAt(stream, end);
    return next ? next->sampleRate == header->sampleRate : end == stream.size();
}

/// The first offset within \p limit bytes from \p begin on at which a frame begins that the end or another one follows.
std::optional<qint64> nextFrameOffset(const ByteRange& stream, qint64 begin, qint64 limit)
{
    constexpr qint64 kBlockSize = 16 * 1024;
    return FrameCounter::nextOffset(stream, begin, limit, kBlockSize, [&](uchar second, qint64 offset) {
        return (second & 0xF6) == 0xF0 && isFrameAt(stream, offset);
    });
}

FrameCounter::Count countFrames(const ByteRange& stream, qint64 first)
{
    const auto frameAt = [&](qint64 offset) -> std::optional<FrameCounter::Frame> {
        const std::optional<FrameHeader> header = headerAt(stream, offset);
        if (!header)
            return std::nullopt;
        return FrameCounter::Frame{static_cast<double>(header->samples) / header->sampleRate,
                                   std::min(header->byteCount, stream.size() - offset)};
    };
    return FrameCounter::count(stream, first, frameAt,
                               [&](qint64 begin, qint64 limit) { return nextFrameOffset(stream, begin, limit); });
}

} // namespace

std::optional<Sound> read(const ByteRange& stream)
{
    constexpr qint64 kSearchLimit = 64 * 1024; // chosen: junk in front is rare, and short where it is
    const std::optional<qint64> first = nextFrameOffset(stream, 0, kSearchLimit);
    if (!first)
        return std::nullopt;
    const FrameCounter::Count count = countFrames(stream, *first);
    if (count.seconds <= 0)
        return std::nullopt;
    Sound sound;
    sound.seconds = count.seconds;
    sound.details.audioDataByteCount = static_cast<quint64>(count.bytes);
    sound.details.bitRate = count.bytes * 8 / count.seconds;
    return sound;
}

} // namespace AacStream
