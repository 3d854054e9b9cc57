#include "ui/covers/ChosenPicture.h"

#include "core/library/artwork/ArtworkImage.h"

#include <QBuffer>
#include <QImageReader>

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
    QBuffer buffer(&picture.bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    picture.format = spelled(reader.format());
    if (size.isValid() && qint64(size.width()) * size.height() > ArtworkImage::kMaximumPixels)
        return std::nullopt;
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const bool isReduced = size.isValid() && std::max(size.width(), size.height()) > kPreviewSide;
    if (isReduced)
        reader.setScaledSize(size.scaled(kPreviewSide, kPreviewSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    picture.preview = reader.read();
    if (picture.preview.isNull())
        return std::nullopt;
    const QSize upright = isTurned ? size.transposed() : size;
    picture.size = isReduced ? upright : picture.preview.size();
    return picture;
}
