#include "ui/covers/ChosenPicture.h"

#include "core/library/artwork/ArtworkImage.h"

namespace {

QString spelled(const QByteArray& format)
{
    if (format == "jpg")
        return QStringLiteral("JPEG");
    return format == "webp" ? QStringLiteral("WebP") : QString::fromLatin1(format.toUpper());
}

} // namespace

std::optional<ChosenPicture> ChosenPicture::prepare(const PictureSource& source)
{
    ChosenPicture picture;
    picture.bytes = PictureSources::bytesOf(source);
    if (picture.bytes.isEmpty() || picture.bytes.size() > ArtworkImage::kMaximumBytes)
        return std::nullopt;
    const ArtworkImage::Picture read = ArtworkImage::read(picture.bytes, kPreviewSide);
    if (read.image.isNull())
        return std::nullopt;
    picture.preview = read.image;
    picture.size = read.size;
    picture.format = spelled(read.format);
    return picture;
}
