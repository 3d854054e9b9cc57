#include "ui/waveform/WaveformPicture.h"

#include <QImage>
#include <QPainter>

#include <cmath>

namespace {

void paintShape(QImage& image, const WaveformShape& shape, const QColor& colour)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    if (!shape.area.isEmpty())
        painter.drawPath(shape.area);
    if (shape.radius <= 0) {
        painter.drawRects(shape.marks.data(), static_cast<int>(shape.marks.size()));
        return;
    }
    for (const QRectF& mark : shape.marks)
        painter.drawRoundedRect(mark, shape.radius, shape.radius);
}

QPixmap finished(QImage image, double ratio)
{
    QPixmap pixmap = QPixmap::fromImage(std::move(image));
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

} // namespace

bool WaveformPicture::prepare(const Envelope& envelope, const Look& look)
{
    if (envelope == m_envelope && look == m_look)
        return false;
    clear();
    m_envelope = envelope;
    m_look = look;
    const QSize pixels(static_cast<int>(std::lround(look.size.width() * look.ratio)),
                       static_cast<int>(std::lround(look.size.height() * look.ratio)));
    if (!envelope || pixels.isEmpty())
        return true;
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    paintShape(image, waveformShape(look.drawer, *envelope, pixels, look.ratio), look.colours.unplayed);
    m_unplayed = finished(std::move(image), look.ratio);
    return true;
}

/// The other picture in the other colour: the coverage of every pixel is the same.
const QPixmap& WaveformPicture::played()
{
    if (!m_played.isNull())
        return m_played;
    QImage image = m_unplayed.toImage();
    image.setDevicePixelRatio(1);
    QPainter recolour(&image);
    recolour.setCompositionMode(QPainter::CompositionMode_SourceIn);
    recolour.fillRect(image.rect(), m_look.colours.played);
    recolour.end();
    m_played = finished(std::move(image), m_look.ratio);
    return m_played;
}

void WaveformPicture::paint(QPainter& painter, const QPointF& place, double split)
{
    if (m_unplayed.isNull())
        return;
    const int width = m_unplayed.width();
    const int height = m_unplayed.height();
    const int at = std::clamp(static_cast<int>(std::lround(split * m_look.ratio)), 0, width);
    // Between two pixels of the device, one column would be drawn twice or left out.
    const QTransform& toDevice = painter.deviceTransform();
    const QPointF origin = toDevice.inverted().map(QPointF(toDevice.map(place).toPoint()));
    const auto copy = [&](const QPixmap& pixmap, int from, int to) {
        const QRectF target(origin.x() + from / m_look.ratio, origin.y(), (to - from) / m_look.ratio,
                            height / m_look.ratio);
        painter.drawPixmap(target, pixmap, QRectF(from, 0, to - from, height));
    };
    if (at > 0)
        copy(played(), 0, at);
    if (at < width)
        copy(m_unplayed, at, width);
}

void WaveformPicture::clear()
{
    m_envelope.reset();
    m_look = {};
    m_unplayed = QPixmap();
    m_played = QPixmap();
}
