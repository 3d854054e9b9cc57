#include "tags/writing/Mp3Trailer.h"

#include "tags/writing/ApeFilter.h"
#include "tags/writing/Id3v1Filter.h"
#include "tags/writing/WriteErrors.h"

namespace Mp3Trailer {

qint64 audioEnd(const Read& read, qint64 fileSize, qint64 lowerBound, const QString& path)
{
    qint64 end = fileSize;
    while (const std::optional<TrailerPart> tag = TrailerParts::tagBefore(read, end, lowerBound, path))
        end = tag->offset;
    return end;
}

QByteArray filtered(QByteArrayView trailer, CleanerFields fields, const std::optional<QString>& title,
                    const QString& path)
{
    QByteArrayView front = trailer;
    QByteArray id3v1;
    const Read read = [&](qint64 offset, qint64 count) { return trailer.sliced(offset, count).toByteArray(); };
    const std::optional<TrailerPart> last = TrailerParts::tagBefore(read, trailer.size(), 0, path);
    if (last && last->kind == TrailerPart::Kind::Id3v1) {
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
