#include "ui/thumbnails/ThumbnailDecoder.h"

#include "core/library/artwork/ArtworkImage.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include <cmath>

namespace {

constexpr int kQuality = 84; // lossy quality 0.84

/// The decoded picture, upright. Its size is asked for beforehand, because JPEG saves most of its work by that.
QImage readUpright(const QByteArray& bytes, int side)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > ArtworkImage::kMaximumPixels)
        return {};
    if (size.isValid() && std::max(size.width(), size.height()) > side)
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
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

} // namespace

namespace ThumbnailDecoder {

int pixels(int side, double ratio)
{
    return static_cast<int>(std::lround(side * ratio));
}

std::optional<QByteArray> jpeg(const QByteArray& bytes, int maximumPixelSize)
{
    QImage image = onWhite(readUpright(bytes, maximumPixelSize));
    if (image.isNull())
        return std::nullopt;
    if (std::max(image.width(), image.height()) > maximumPixelSize) { // a format that does not tell its size
        const QSize size = image.size().scaled(maximumPixelSize, maximumPixelSize, Qt::KeepAspectRatio);
        image = image.scaled(size.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "JPEG", kQuality))
        return std::nullopt;
    return buffer.data();
}

Square square(const QByteArray& bytes, int reducedTo, int side, double radius)
{
    const QImage source = QImage::fromData(bytes);
    if (source.isNull())
        return {};
    const int edge = std::min(source.width(), source.height());
    const bool wasReduced = std::max(source.width(), source.height()) >= reducedTo;
    const QRect middle((source.width() - edge) / 2, (source.height() - edge) / 2, edge, edge);
    const QImage scaled = source.copy(middle).scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

    QImage rounded(side, side, QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(scaled));
    painter.drawRoundedRect(rounded.rect(), radius, radius);
    return {rounded, wasReduced && edge < side};
}

} // namespace ThumbnailDecoder
