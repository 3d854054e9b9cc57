#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

/// Bytes of pictures for tests.
namespace Pictures {

inline QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format, 95);
    return bytes;
}

inline QByteArray plain(QSize size, QRgb colour, const char* format)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(QColor::fromRgba(colour));
    return encoded(image, format);
}

/// A JPEG that says it was taken with the camera turned by a quarter: what is stored lies on its side.
inline QByteArray turned(QByteArray jpeg)
{
    // APP1 with one Exif entry: orientation (0x0112), a short of value 6.
    static const QByteArray kOrientation = QByteArray::fromHex("ffe10022457869660000"
                                                               "4d4d002a00000008"
                                                               "00010112000300000001000600000000"
                                                               "0000");
    return jpeg.insert(2, kOrientation);
}

} // namespace Pictures
