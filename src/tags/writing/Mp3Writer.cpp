#include "tags/writing/Mp3Writer.h"

#include "core/model/AudioTags.h"
#include "platform/FileURL.h"
#include "tags/writing/FileRewrite.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/Id3v2Filter.h"
#include "tags/writing/Mp3Trailer.h"
#include "tags/writing/SourceFile.h"
#include "tags/writing/TagSizes.h"
#include "tags/writing/WriteErrors.h"

namespace Mp3Writer {

namespace {

/// Tags behind the sound are held in memory while they are filtered. Chosen: as large as a tag in front can be.
constexpr qint64 kLargestTrailer = qint64(1) << 28;

using TagSizes::kId3HeaderSize;

const QString& format()
{
    static const QString kFormat = QStringLiteral("mp3");
    return kFormat;
}

/// The header of an ID3v2 tag at an offset; empty if there is none.
QByteArray id3HeaderAt(const FileRewrite& rewrite, qint64 offset)
{
    if (rewrite.sourceSize() - offset < kId3HeaderSize)
        return {};
    const QByteArray header = rewrite.read(offset, kId3HeaderSize);
    return TagSizes::isId3Header(header) ? header : QByteArray();
}

/// Calls of the file's own reading.
Mp3Trailer::Read readerOf(const FileRewrite& rewrite)
{
    return [&rewrite](qint64 offset, qint64 count) { return rewrite.read(offset, count); };
}

qint64 audioStart(const FileRewrite& rewrite, const QString& path)
{
    return TagSizes::behindId3Tags(readerOf(rewrite), rewrite.sourceSize(), path);
}

qint64 audioEnd(const FileRewrite& rewrite, qint64 start, const QString& path)
{
    return Mp3Trailer::audioEnd(readerOf(rewrite), rewrite.sourceSize(), start, path);
}

/// \return the stretch for the comparison.
SoundSpan copySound(FileRewrite& rewrite, qint64 start, qint64 end)
{
    const SoundSpan sound{start, rewrite.written(), end - start};
    rewrite.copy(start, end - start);
    return sound;
}

/// Writes the tags in front without the fields. \return where the sound begins.
qint64 writeFilteredTags(FileRewrite& rewrite, CleanerFields fields, const std::optional<QString>& title,
                         const std::optional<QString>& album, const QString& path)
{
    qint64 start = 0;
    for (QByteArray header = id3HeaderAt(rewrite, 0); !header.isEmpty(); header = id3HeaderAt(rewrite, start)) {
        const std::optional<quint32> size = TagSizes::syncsafe(header.sliced(6));
        if (!size)
            throw FileError(FileError::Case::fileReadCorruptFile, path);
        const QByteArray tag = rewrite.read(start, kId3HeaderSize + *size);
        const bool isFirst = start == 0;
        rewrite.write(
            Id3v2Filter::filtered(tag, fields, isFirst ? title : std::nullopt, isFirst ? album : std::nullopt, path));
        start += tag.size();
    }
    return start;
}

/// A tag of what is to be set; nothing if that is nothing.
QByteArray newTag(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album)
{
    AudioTags tags;
    if (fields.testFlag(CleanerField::Title))
        tags.title = title.value_or(QString());
    if (fields.testFlag(CleanerField::Album))
        tags.album = album.value_or(QString());
    return Id3v2Builder::tag(tags, std::nullopt);
}

} // namespace

void write(const AudioTags& tags, const std::optional<QByteArray>& artwork, const QString& path)
{
    FileRewrite rewrite(path, format(), FileRewrite::OnFailure::Keep);
    const qint64 start = audioStart(rewrite, path);
    const qint64 end = audioEnd(rewrite, start, path);
    if (end < start)
        throw FileError(FileError::Case::fileReadCorruptFile, path);
    const QByteArray tag = Id3v2Builder::tag(tags, artwork);
    if (!Id3v2Builder::fits(tag))
        throw FileError(FileError::Case::fileWriteOutOfSpace, path);
    rewrite.write(tag);
    const SoundSpan sound = copySound(rewrite, start, end);
    rewrite.commit({sound}, format());
}

void clean(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
           const QString& path)
{
    FileRewrite rewrite(path, FileURL::pathExtension(FileURL::fromPath(path)));
    const qint64 start = writeFilteredTags(rewrite, fields, title, album, path);
    if (start == 0)
        rewrite.write(newTag(fields, title, album));
    const qint64 end = audioEnd(rewrite, start, path);
    if (rewrite.sourceSize() - end > kLargestTrailer)
        throw FileError(FileError::Case::fileWriteOutOfSpace, path);
    const SoundSpan sound = copySound(rewrite, start, end);
    rewrite.write(Mp3Trailer::filtered(rewrite.read(end, rewrite.sourceSize() - end), fields, title, path));
    rewrite.commit({sound}, format());
}

bool contains(const QByteArray& artwork, const QString& path)
{
    const SourceFile file(path);
    if (artwork.isEmpty() || file.size() < kId3HeaderSize)
        return false;
    const QByteArray header = file.read(0, kId3HeaderSize);
    if (!TagSizes::isId3Header(header))
        return false;
    const qint64 size = TagSizes::folded(header.sliced(6));
    return size <= file.size() - kId3HeaderSize && file.read(kId3HeaderSize, size).contains(artwork);
}

} // namespace Mp3Writer
