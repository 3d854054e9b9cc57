#include "tags/containers/FlacFile.h"

#include "tags/bytes/ByteReader.h"
#include "tags/fields/ItemCollector.h"
#include "tags/formats/VorbisComment.h"

#include <algorithm>
#include <ranges>
#include <vector>

namespace FlacFile {

namespace {

// Source: RFC 9639, sections 8.1 and 8.2.
constexpr qint64 kMarkerSize = 4;
constexpr qint64 kBlockHeaderSize = 4;
enum class BlockType : quint8 { StreamInfo = 0, VorbisComment = 4, Picture = 6 };

std::optional<Sound> streamInfo(const QByteArray& block)
{
    ByteReader reader(block);
    reader.skip(10);                       // block and frame sizes
    const quint64 packed = reader.u64be(); // 20 bits rate, 3 channels - 1, 5 depth - 1, 36 number of samples
    const auto sampleRate = static_cast<double>(packed >> 44);
    if (reader.hasFailed() || sampleRate == 0)
        return std::nullopt;
    Sound sound;
    sound.details.bitDepth = static_cast<int>(packed >> 36 & 0x1f) + 1;
    if (const quint64 samples = packed & 0xFFFFFFFFFull)
        sound.seconds = static_cast<double>(samples) / sampleRate;
    return sound;
}

} // namespace

std::optional<Sound> read(const ByteRange& file, ItemCollector& items)
{
    std::optional<Sound> sound;
    std::vector<ByteRange> pictures;   // shown after the comments whatever their place, so that the last one wins
    std::optional<ByteRange> comments; // the first block: more than one is not allowed
    qint64 offset = kMarkerSize;
    for (bool isLast = false; !isLast;) {
        const QByteArray header = file.read(offset, kBlockHeaderSize);
        ByteReader reader(header);
        const quint8 type = reader.u8();
        const ByteRange block = file.part(offset + kBlockHeaderSize, reader.u24be());
        if (reader.hasFailed())
            break;
        isLast = type & 0x80;
        switch (static_cast<BlockType>(type & 0x7f)) {
        case BlockType::StreamInfo:
            if (!sound)
                sound = streamInfo(block.read(0, block.size()));
            break;
        case BlockType::VorbisComment:
            if (!comments)
                comments = block;
            break;
        case BlockType::Picture:
            if (pictures.size() < ItemCollector::kMaximumItems)
                pictures.push_back(block);
            break;
        default:
            break;
        }
        offset += kBlockHeaderSize + block.size();
    }
    if (comments)
        VorbisComment::read(comments->read(0, comments->size()), items);
    // The last one is shown: the others are read only if it is empty.
    for (const ByteRange& picture : std::views::reverse(pictures)) {
        const std::size_t before = items.size();
        VorbisComment::readPicture(picture.read(0, picture.size()), items);
        if (items.size() > before)
            break;
    }
    if (sound) {
        sound->details.audioDataByteCount = static_cast<quint64>(std::max<qint64>(0, file.size() - offset));
        if (sound->seconds)
            sound->details.bitRate = static_cast<double>(sound->details.audioDataByteCount) * 8 / *sound->seconds;
    }
    return sound;
}

} // namespace FlacFile
