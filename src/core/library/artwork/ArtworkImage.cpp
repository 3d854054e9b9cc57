#include "core/library/artwork/ArtworkImage.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

namespace ArtworkImage {

namespace {

constexpr int kJpegQuality = 92; // compression factor 0.92

bool hasTooMany(const QSize& size)
{
    return size.isValid() && qint64(size.width()) * size.height() > kMaximumPixels;
}

} // namespace

Picture read(const QByteArray& bytes, int maximumSide)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    Picture picture{QImage(), reader.size(), reader.format()};
    if (hasTooMany(picture.size))
        return picture;
    const bool isReduced = maximumSide > 0 && picture.size.isValid() &&
                           std::max(picture.size.width(), picture.size.height()) > maximumSide;
    if (isReduced)
        reader.setScaledSize(picture.size.scaled(maximumSide, maximumSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    picture.image = reader.read();
    if (!isReduced)
        picture.size = picture.image.size();
    else if (isTurned)
        picture.size.transpose();
    return picture;
}

QImage onWhite(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return image;
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, image);
    return result;
}

std::optional<QByteArray> normalizedArtworkData(const QByteArray& image)
{
    if (image.size() > kMaximumBytes)
        return std::nullopt;
    if (image.startsWith(QByteArrayView("\x89PNG")))
        return isTooLarge(image) ? std::nullopt : std::optional(image);
    const QImage picture = read(image, 0).image;
    if (picture.isNull())
        return std::nullopt;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!onWhite(picture).save(&buffer, "JPEG", kJpegQuality) || buffer.data().size() > kMaximumBytes)
        return std::nullopt;
    return buffer.data();
}

void allowLargePictures()
{
    constexpr qint64 kBytesPerPixel = 4;
    constexpr qint64 kMegabyte = 1024 * 1024; // the unit of the limit
    QImageReader::setAllocationLimit(static_cast<int>(kMaximumPixels * kBytesPerPixel / kMegabyte + 1));
}

bool isTooLarge(const QByteArray& image)
{
    QBuffer buffer;
    buffer.setData(image);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    return hasTooMany(reader.size());
}

QImage decoded(const QByteArray& image)
{
    return read(image, kShownSide).image;
}

} // namespace ArtworkImage
