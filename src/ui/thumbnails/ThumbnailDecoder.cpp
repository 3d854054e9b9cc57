#include "ui/thumbnails/ThumbnailDecoder.h"

#include "core/library/artwork/ArtworkImage.h"

#include <QBuffer>
#include <QPainter>

#include <cmath>

namespace {

constexpr int kQuality = 84; // lossy quality 0.84

} // namespace

namespace ThumbnailDecoder {

int pixels(int side, double ratio)
{
    return static_cast<int>(std::lround(side * ratio));
}

std::optional<QByteArray> jpeg(const QByteArray& bytes, int maximumPixelSize)
{
    QImage image = ArtworkImage::onWhite(ArtworkImage::read(bytes, maximumPixelSize).image);
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
