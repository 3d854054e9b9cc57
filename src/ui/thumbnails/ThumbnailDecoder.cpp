#include "ui/thumbnails/ThumbnailDecoder.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include <cmath>

namespace {

/// The decoded picture, no larger than it has to be: some formats scale while they decode.
QImage readScaled(const QByteArray& bytes, int side)
{
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.isValid() && size.width() > 4 * side && size.height() > 4 * side)
        reader.setScaledSize(size.scaled(2 * side, 2 * side, Qt::KeepAspectRatioByExpanding));
    return reader.read();
}

} // namespace

namespace ThumbnailDecoder {

int pixels(int side, double ratio)
{
    return static_cast<int>(std::lround(side * ratio));
}

QImage decode(const QByteArray& bytes, int side, double radius)
{
    const QImage source = readScaled(bytes, side);
    if (source.isNull())
        return {};
    const int edge = std::min(source.width(), source.height());
    const QRect square((source.width() - edge) / 2, (source.height() - edge) / 2, edge, edge);
    const QImage scaled = source.copy(square).scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

    QImage rounded(side, side, QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(scaled));
    painter.drawRoundedRect(rounded.rect(), radius, radius);
    return rounded;
}

QImage Job::operator()(std::stop_token stop) const
{
    QByteArray bytes = artwork.bytes();
    if (bytes.isNull() && readArtwork)
        bytes = readArtwork(url);
    if (bytes.isEmpty() || stop.stop_requested())
        return {};
    return decode(bytes, pixels(side, ratio), radius * ratio);
}

} // namespace ThumbnailDecoder
