#include "core/library/artwork/ArtworkImage.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

namespace ArtworkImage {

namespace {

constexpr int kJpegQuality = 92; // "compression factor 0.92"

bool hasTooMany(const QSize& size)
{
    return size.isValid() && qint64(size.width()) * size.height() > kMaximumPixels;
}

QImage read(const QByteArray& bytes, int maximumSide)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (hasTooMany(size))
        return {};
    if (size.isValid() && maximumSide > 0 && std::max(size.width(), size.height()) > maximumSide)
        reader.setScaledSize(size.scaled(maximumSide, maximumSide, Qt::KeepAspectRatio));
    return reader.read();
}

/// A JPEG has no transparency; covers lie on white.
QImage opaque(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return image;
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, image);
    return result;
}

} // namespace

std::optional<QByteArray> normalizedArtworkData(const QByteArray& image)
{
    if (image.size() > kMaximumBytes)
        return std::nullopt;
    if (image.startsWith(QByteArrayView("\x89PNG")))
        return isTooLarge(image) ? std::nullopt : std::optional(image);
    const QImage picture = read(image, 0);
    if (picture.isNull())
        return std::nullopt;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!opaque(picture).save(&buffer, "JPEG", kJpegQuality) || buffer.data().size() > kMaximumBytes)
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
    return read(image, kShownSide);
}

} // namespace ArtworkImage
