#include "tags/AssetReader.h"

#include "tags/bytes/ByteSource.h"
#include "tags/containers/AacStream.h"
#include "tags/containers/AiffFile.h"
#include "tags/containers/FlacFile.h"
#include "tags/containers/Mp4File.h"
#include "tags/containers/MpegStream.h"
#include "tags/containers/WaveFile.h"
#include "tags/fields/ItemCollector.h"
#include "tags/formats/ApeTag.h"
#include "tags/formats/Id3v1.h"
#include "tags/formats/Id3v2.h"

#include <cmath>

namespace AssetReader {

namespace {

enum class Kind { Unknown, Wave, Aiff, Mp4, Flac, Aac, Mpeg };

constexpr qint64 kMagicSize = 12;

Kind containerKind(QByteArrayView head)
{
    const auto at = [&](qsizetype offset) {
        return head.size() >= offset + 4 ? head.sliced(offset, 4) : QByteArrayView();
    };
    if ((at(0) == "RIFF" || at(0) == "RF64" || at(0) == "BW64") && at(8) == "WAVE")
        return Kind::Wave;
    if (at(0) == "FORM" && (at(8) == "AIFF" || at(8) == "AIFC"))
        return Kind::Aiff;
    for (const char* atom : {"ftyp", "moov", "mdat", "wide", "free", "skip"}) {
        if (at(4) == QByteArrayView(atom))
            return Kind::Mp4;
    }
    return Kind::Unknown;
}

/// The kind of what stands behind a leading ID3v2 tag, if there is one.
Kind streamKind(QByteArrayView head, QStringView extension)
{
    if (head.startsWith("fLaC"))
        return Kind::Flac;
    if (head.size() >= 2 && head[0] == '\xFF' && (head[1] & '\xE0') == '\xE0') {
        const bool hasNoLayer = (head[1] & '\xF6') == '\xF0';
        if (hasNoLayer || (head[1] & 0x06) != 0)
            return hasNoLayer ? Kind::Aac : Kind::Mpeg;
    }
    // Junk in front of the first frame is common in these two only.
    if (extension.compare(QLatin1StringView("mp3"), Qt::CaseInsensitive) == 0)
        return Kind::Mpeg;
    return extension.compare(QLatin1StringView("aac"), Qt::CaseInsensitive) == 0 ? Kind::Aac : Kind::Unknown;
}

std::optional<Sound> readContainer(Kind kind, const ByteRange& file, ItemCollector& items)
{
    switch (kind) {
    case Kind::Wave:
        return WaveFile::read(file, items);
    case Kind::Aiff:
        return AiffFile::read(file, items);
    case Kind::Mp4:
        return Mp4File::read(file, items);
    default:
        return std::nullopt;
    }
}

/// Takes off a Lyrics3 2.00 block, of which nothing is shown. Source: the layout of Lyrics3 v2.00, id3.org.
void skipLyrics(ByteRange& range)
{
    constexpr qint64 kFooterSize = 15; // six digits and the mark
    const QByteArray footer = range.read(range.size() - kFooterSize, kFooterSize);
    if (range.size() < kFooterSize || !footer.endsWith("LYRICS200"))
        return;
    bool isNumber = false;
    const qint64 size = footer.first(6).toUInt(&isNumber) + kFooterSize;
    const QByteArrayView mark("LYRICSBEGIN");
    if (isNumber && size <= range.size() && range.read(range.size() - size, mark.size()) == mark)
        range.end -= size;
}

/// Files that are a bare stream with tags in front and behind. The tags' order is that of trust, not that of the file.
std::optional<Sound> readStream(ByteRange file, QStringView extension, ItemCollector& items)
{
    Id3v1::read(file, items);
    skipLyrics(file);
    ApeTag::read(file, items);
    skipLyrics(file); // the two come in either order
    Id3v2::read(file, items);
    const QByteArray head = file.read(0, kMagicSize);
    switch (streamKind(head, extension)) {
    case Kind::Flac:
        return FlacFile::read(file, items);
    case Kind::Aac:
        return AacStream::read(file);
    case Kind::Mpeg:
        return MpegStream::read(file);
    default:
        return std::nullopt;
    }
}

} // namespace

Asset read(ByteSource& source, QStringView extension, const Options& options)
{
    const ByteRange file = ByteRange::whole(source);
    ItemCollector items;
    Asset asset;
    const Kind kind = containerKind(file.read(0, kMagicSize));
    asset.sound = kind == Kind::Unknown ? readStream(file, extension, items) : readContainer(kind, file, items);
    if (source.wasCutShort())
        return {};
    if (asset.sound && !std::isfinite(asset.sound->details.bitRate))
        asset.sound->details.bitRate = 0;
    asset.items = items.take(options.readsWindows1251);
    return asset;
}

} // namespace AssetReader
