#include "tags/writing/Mp3Trailer.h"

#include "tags/writing/ApeFilter.h"
#include "tags/writing/Id3v1Filter.h"
#include "tags/writing/WriteErrors.h"

namespace Mp3Trailer {

namespace {

/// Offset behind an APEv2 tag -> offset before it. \p footer is its last block.
qint64 beforeApeTag(const Read& read, const ApeFilter::Block& footer, qint64 end, qint64 lowerBound)
{
    const qint64 begin = end - footer.size;
    if (begin < lowerBound + ApeFilter::kBlockSize)
        return begin;
    const auto header = ApeFilter::block(read(begin - ApeFilter::kBlockSize, ApeFilter::kBlockSize));
    return header && header->size == footer.size ? begin - ApeFilter::kBlockSize : begin;
}

} // namespace

qint64 audioEnd(const Read& read, qint64 fileSize, qint64 lowerBound, const QString& path)
{
    qint64 end = fileSize;
    for (;;) {
        bool hasRemoved = false;
        if (end >= lowerBound + Id3v1Filter::kTagSize && read(end - Id3v1Filter::kTagSize, 3) == "TAG") {
            end -= Id3v1Filter::kTagSize;
            hasRemoved = true;
        }
        if (end < lowerBound + ApeFilter::kBlockSize)
            return end;
        const auto footer = ApeFilter::block(read(end - ApeFilter::kBlockSize, ApeFilter::kBlockSize));
        if (!footer || footer->isHeader) {
            if (!hasRemoved)
                return end;
            continue;
        }
        if (footer->size < ApeFilter::kBlockSize || footer->size > end - lowerBound)
            throw FileError(FileError::Case::fileReadCorruptFile, path);
        end = beforeApeTag(read, *footer, end, lowerBound);
    }
}

QByteArray filtered(QByteArrayView trailer, CleanerFields fields, const std::optional<QString>& title,
                    const QString& path)
{
    QByteArrayView front = trailer;
    QByteArray id3v1;
    if (trailer.size() >= Id3v1Filter::kTagSize && trailer.last(Id3v1Filter::kTagSize).startsWith("TAG")) {
        id3v1 = Id3v1Filter::filtered(trailer.last(Id3v1Filter::kTagSize), fields, title);
        front = trailer.chopped(Id3v1Filter::kTagSize);
    }
    if (front.isEmpty())
        return id3v1;
    const std::optional<QByteArray> ape = ApeFilter::filtered(front, fields);
    if (!ape)
        throw FileError(FileError::Case::fileReadCorruptFile, path);
    return *ape + id3v1;
}

} // namespace Mp3Trailer
