#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

/// Bytes of a cover become a reduced JPEG, and that a small square picture with round corners. Thread: any.
namespace ThumbnailDecoder {

/// Device pixels of a side.
int pixels(int side, double ratio);

/// The picture, upright, at most \p maximumPixelSize on its longer side and never enlarged, as JPEG of quality 84.
/// Transparent parts become white. Nothing if the bytes are no picture, or one of more than 100 million pixels.
std::optional<QByteArray> jpeg(const QByteArray& bytes, int maximumPixelSize);

/// A picture for the screen.
struct Square {
    QImage image;             ///< null if the bytes are no picture
    bool wantsLarger = false; ///< the reduced picture was too small for it: a long one, whose longer side set its size
};

/// Cuts the middle square out and scales it. \param bytes a picture that was reduced to \p reducedTo pixels on its
/// longer side, or that is smaller. \param side, radius device pixels.
Square square(const QByteArray& bytes, int reducedTo, int side, double radius);

} // namespace ThumbnailDecoder
