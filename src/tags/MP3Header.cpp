#include "tags/MP3Header.h"

#include "platform/FileURL.h"
#include "tags/bytes/FileBytes.h"

#include <algorithm>
#include <array>

namespace MP3Header {

namespace {

constexpr qint64 kReadLimit = 0x20000;

// Kilobits per second by index. Source: ISO/IEC 11172-3, 2.4.2.3, and 13818-3, 2.4.2.3.
using Table = std::array<int, 15>;
constexpr Table kMpeg1Layer1{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448};
constexpr Table kMpeg1Layer2{0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
constexpr Table kMpeg1Layer3{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr Table kMpeg2Layer1{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256};
constexpr Table kMpeg2Layers2And3{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

constexpr int kMpeg1 = 3;
constexpr int kReservedVersion = 1;
constexpr int kLayer1 = 3;
constexpr int kLayer2 = 2;
constexpr int kReservedLayer = 0;

const Table& table(int version, int layer)
{
    if (version == kMpeg1)
        return layer == kLayer1 ? kMpeg1Layer1 : layer == kLayer2 ? kMpeg1Layer2 : kMpeg1Layer3;
    return layer == kLayer1 ? kMpeg2Layer1 : kMpeg2Layers2And3;
}

/// Behind a leading ID3v2 tag, but never so far that no header would fit.
qsizetype scanStart(QByteArrayView head)
{
    if (!head.startsWith("ID3") || head.size() < 10)
        return 0;
    qsizetype size = 0;
    for (const char byte : head.sliced(6, 4))
        size = size << 7 | (static_cast<uchar>(byte) & 0x7f);
    return std::min(size + 10, head.size() - 4);
}

} // namespace

std::optional<double> bitRate(QByteArrayView head)
{
    if (head.size() < 4)
        return std::nullopt;
    for (qsizetype offset = scanStart(head); offset < head.size() - 3; ++offset) {
        const auto byte = [&](qsizetype distance) {
            return static_cast<int>(static_cast<uchar>(head[offset + distance]));
        };
        const int version = byte(1) >> 3 & 3;
        const int layer = byte(1) >> 1 & 3;
        const int index = byte(2) >> 4;
        if (byte(0) == 255 && byte(1) >= 224 && version != kReservedVersion && layer != kReservedLayer && index != 0 &&
            index != 15)
            return table(version, layer)[static_cast<std::size_t>(index)] * 1000.0;
    }
    return std::nullopt;
}

std::optional<double> bitRate(const QUrl& url)
{
    if (FileURL::pathExtension(url).compare(QLatin1StringView("mp3"), Qt::CaseInsensitive) != 0)
        return std::nullopt;
    const std::unique_ptr<FileBytes> file = FileBytes::open(url);
    return file ? bitRate(file->read(0, kReadLimit)) : std::nullopt;
}

} // namespace MP3Header
