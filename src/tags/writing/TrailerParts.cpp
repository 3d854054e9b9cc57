#include "tags/writing/TrailerParts.h"

#include "tags/writing/ApeFilter.h"
#include "tags/writing/Id3v1Filter.h"
#include "tags/writing/WriteErrors.h"

namespace TrailerParts {

namespace {

std::optional<TrailerPart> id3v1Before(const Read& read, qint64 end, qint64 lowerBound)
{
    const qint64 begin = end - Id3v1Filter::kTagSize;
    if (begin < lowerBound || read(begin, 3) != "TAG")
        return std::nullopt;
    // The mark of an APEv2 tag holds these three letters too.
    constexpr qint64 kLettersBefore = 3;
    if (begin - kLettersBefore >= lowerBound && read(begin - kLettersBefore, 8) == "APETAGEX")
        return std::nullopt;
    return TrailerPart{TrailerPart::Kind::Id3v1, begin, Id3v1Filter::kTagSize};
}

/// What a look finds; a broken tag is there, but cannot be told from the sound.
struct Found {
    std::optional<TrailerPart> part;
    bool isBroken = false;
};

Found apeBefore(const Read& read, qint64 end, qint64 lowerBound)
{
    constexpr qint64 kBlock = ApeFilter::kBlockSize;
    if (end - kBlock < lowerBound)
        return {};
    const auto footer = ApeFilter::block(read(end - kBlock, kBlock));
    if (!footer || footer->isHeader)
        return {};
    if (footer->size < kBlock || footer->size > end - lowerBound)
        return {std::nullopt, true};
    qint64 begin = end - footer->size;
    if (begin - kBlock >= lowerBound) {
        const auto header = ApeFilter::block(read(begin - kBlock, kBlock));
        if (header && header->size == footer->size)
            begin -= kBlock;
    }
    return {TrailerPart{TrailerPart::Kind::Ape, begin, end - begin}};
}

/// Source: the layout of Lyrics3 v2.00, id3.org.
std::optional<TrailerPart> lyricsBefore(const Read& read, qint64 end, qint64 lowerBound)
{
    constexpr qint64 kFooterSize = 15; // six digits and the mark
    if (end - kFooterSize < lowerBound)
        return std::nullopt;
    const QByteArray footer = read(end - kFooterSize, kFooterSize);
    bool isNumber = false;
    const qint64 size = footer.first(6).toUInt(&isNumber) + kFooterSize;
    const QByteArray mark("LYRICSBEGIN");
    const bool isBlock = footer.endsWith("LYRICS200") && isNumber && size <= end - lowerBound &&
                         size >= kFooterSize + mark.size() && read(end - size, mark.size()) == mark;
    return isBlock ? std::optional(TrailerPart{TrailerPart::Kind::Lyrics, end - size, size}) : std::nullopt;
}

Found tagOrBroken(const Read& read, qint64 end, qint64 lowerBound)
{
    const std::optional<TrailerPart> id3v1 = id3v1Before(read, end, lowerBound);
    return id3v1 ? Found{id3v1} : apeBefore(read, end, lowerBound);
}

} // namespace

std::optional<TrailerPart> tagBefore(const Read& read, qint64 end, qint64 lowerBound, const QString& path)
{
    const Found found = tagOrBroken(read, end, lowerBound);
    if (found.isBroken)
        throw FileError(FileError::Case::fileReadCorruptFile, path);
    return found.part;
}

std::optional<TrailerPart> partBefore(const Read& read, qint64 end, qint64 lowerBound, const QString& path)
{
    const std::optional<TrailerPart> tag = tagBefore(read, end, lowerBound, path);
    return tag ? tag : lyricsBefore(read, end, lowerBound);
}

qint64 soundEnd(const Read& read, qint64 fileSize, qint64 lowerBound)
{
    qint64 end = fileSize;
    for (;;) {
        const Found tag = tagOrBroken(read, end, lowerBound);
        if (tag.isBroken)
            return end;
        const std::optional<TrailerPart> part = tag.part ? tag.part : lyricsBefore(read, end, lowerBound);
        if (!part)
            return end;
        end = part->offset;
    }
}

} // namespace TrailerParts
