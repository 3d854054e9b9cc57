#include "platform/audio/MpegFrames.h"

#include "platform/audio/FileImage.h"

#include <QtEndian>

#include <array>
#include <cstring>

namespace {

/// Delay of a decoder for layer III: 528 samples of its filter bank and one more.
constexpr quint32 kDecoderDelay = 528 + 1;
/// Longest frame of layer III: 320 kbit/s at 32 kHz, padded, or 160 kbit/s at 8 kHz.
constexpr qint64 kLongestFrame = 2881;

struct Header {
    int byteCount = 0;
    int samples = 0;
};

/// A frame header of layer III with a stated bit rate (ISO 11172-3 2.4.1.3, ISO 13818-3).
std::optional<Header> parse(quint32 bits)
{
    static constexpr std::array<int, 16> kRates1 = {0,   32,  40,  48,  56,  64,  80,  96,
                                                    112, 128, 160, 192, 224, 256, 320, 0};
    static constexpr std::array<int, 16> kRates2 = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0};
    static constexpr std::array<int, 4> kSampleRates = {44100, 48000, 32000, 0};
    const quint32 version = (bits >> 19) & 3;
    const quint32 layer = (bits >> 17) & 3;
    if ((bits >> 21) != 0x7FF || version == 1 || layer != 1)
        return std::nullopt;
    const bool isFirst = version == 3;
    const int kilobits = (isFirst ? kRates1 : kRates2)[(bits >> 12) & 15];
    const int sampleRate = kSampleRates[(bits >> 10) & 3] >> (isFirst ? 0 : version == 2 ? 1 : 2);
    if (kilobits == 0 || sampleRate == 0)
        return std::nullopt;
    const int samples = isFirst ? 1152 : 576;
    return Header{samples / 8 * kilobits * 1000 / sampleRate + static_cast<int>((bits >> 9) & 1), samples};
}

/// Reads ahead in blocks, so that a walk over headers costs no call to the system for each; from memory it takes the
/// headers alone, which is faster than copying all that lies between.
class Window {
public:
    explicit Window(const FileImage& image)
        : m_image(image)
        , m_bytes(image.isHeld() ? 4 : 64 * 1024)
    {
    }

    /// Four bytes in their order; nothing where the file ends before.
    std::optional<quint32> at(qint64 offset)
    {
        if (offset < m_start || offset + 4 > m_start + m_count) {
            m_start = offset;
            m_count = std::max<qint64>(0, m_image.read(offset, m_bytes));
            if (m_count < 4)
                return std::nullopt;
        }
        return qFromBigEndian<quint32>(m_bytes.data() + (offset - m_start));
    }

private:
    const FileImage& m_image;
    std::vector<std::byte> m_bytes;
    qint64 m_start = 0;
    qint64 m_count = 0;
};

/// Whether a chain may end here: at the file's end or at a tag.
bool isEnd(qint64 left, std::optional<quint32> bits)
{
    constexpr quint32 kTag = 0x54414700; // "TAG"
    constexpr quint32 kApe = 0x41504554; // "APET"
    constexpr quint32 kId3 = 0x49443300; // "ID3"
    constexpr quint32 kLyr = 0x4C595249; // "LYRI"
    if (!bits)
        return left < 4;
    return (*bits & 0xFFFFFF00) == kTag || (*bits & 0xFFFFFF00) == kId3 || *bits == kApe || *bits == kLyr;
}

PacketIndex::Trim trimOf(qint64 sample, qint64 samples, const MpegFrames::Information& information)
{
    PacketIndex::Trim trim;
    if (!information.hasGaps)
        return trim;
    if (sample == 0)
        trim.front = information.delay + kDecoderDelay;
    const qint64 last = information.frames * samples;
    const qint64 padding = static_cast<qint64>(information.padding) - kDecoderDelay;
    const qint64 firstPadded = last - padding;
    if (firstPadded > 0 && sample + samples >= firstPadded && sample < last)
        trim.back = static_cast<quint32>(std::min(sample + samples - firstPadded, samples));
    return trim;
}

/// What the frame tells behind its mark. \param left bytes of the file from the frame on.
MpegFrames::Information fieldsOf(std::span<const std::byte> bytes, qint64 left)
{
    const auto word = [&](size_t offset) {
        return offset + 4 <= bytes.size() ? qFromBigEndian<quint32>(bytes.data() + offset) : 0;
    };
    constexpr quint32 kLame = 0x4C414D45;
    constexpr quint32 kLavf = 0x4C617666;
    constexpr quint32 kLavc = 0x4C617663;
    MpegFrames::Information found;
    const quint32 flags = word(4);
    size_t next = 8;
    if (flags & 1)
        found.frames = word(std::exchange(next, next + 4));
    if (flags & 2)
        found.byteCount = word(std::exchange(next, next + 4));
    next += (flags & 4 ? 100 : 0) + (flags & 8 ? 4 : 0);
    const quint32 encoder = word(next);
    found.hasGaps = encoder == kLame || encoder == kLavf || encoder == kLavc;
    const quint32 gaps = word(next + 20);
    found.delay = (gaps >> 12) & 0xFFF;
    found.padding = gaps & 0xFFF;
    // Much more sound than was told: files joined end to end.
    if (found.byteCount > 0 && left - found.byteCount > found.byteCount / 16)
        found.frames = 0;
    return found;
}

} // namespace

std::optional<MpegFrames::Information> MpegFrames::informationBefore(const FileImage& image, qint64 firstFrame)
{
    constexpr quint32 kXing = 0x58696E67;
    constexpr quint32 kInfo = 0x496E666F;
    std::array<std::byte, kLongestFrame> room;
    const qint64 start = std::max<qint64>(0, firstFrame - kLongestFrame);
    const std::span bytes = std::span(room).first(static_cast<size_t>(firstFrame - start));
    if (image.read(start, bytes) != firstFrame - start)
        return std::nullopt;
    const auto word = [&](qint64 offset) { return qFromBigEndian<quint32>(bytes.data() + offset); };
    for (qint64 mark = firstFrame - start - 8; mark >= 0; --mark) {
        if (word(mark) != kXing && word(mark) != kInfo)
            continue;
        // The frame's header stands before the side information, whose size goes by version and channels.
        for (const qint64 distance : {36, 21, 13}) {
            const qint64 header = mark - distance;
            const auto parsed = header >= 0 ? parse(word(header)) : std::nullopt;
            if (parsed && start + header + parsed->byteCount == firstFrame)
                return fieldsOf(bytes.subspan(static_cast<size_t>(mark)), image.size() - start - header);
        }
    }
    return std::nullopt;
}

qint64 MpegFrames::silentSamples(const Information& information)
{
    if (!information.hasGaps)
        return 0;
    // The delay of the decoder shifts the sound into the padding.
    return information.delay + kDecoderDelay + std::max<qint64>(0, qint64(information.padding) - kDecoderDelay);
}

std::optional<PacketIndex> MpegFrames::walk(const FileImage& image, qint64 firstFrame, qint64 ticks,
                                            const std::optional<Information>& information)
{
    constexpr quint32 kSameStream = 0xFFFE0C00; // sync, version, layer, sample rate
    Window window(image);
    PacketIndex index;
    const auto first = window.at(firstFrame);
    if (!first)
        return std::nullopt;
    if (const auto frame = parse(*first))
        index.reserve((image.size() - firstFrame) / frame->byteCount);
    qint64 sample = 0;
    for (qint64 offset = firstFrame;;) {
        const auto bits = window.at(offset);
        if (isEnd(image.size() - offset, bits))
            break;
        const auto header = bits ? parse(*bits) : std::nullopt;
        if (!header || (*bits & kSameStream) != (*first & kSameStream))
            return std::nullopt;
        index.append(offset, sample * ticks,
                     information ? trimOf(sample, header->samples, *information) : PacketIndex::Trim());
        offset += header->byteCount;
        sample += header->samples;
    }
    index.setEnd(sample * ticks);
    return index;
}
