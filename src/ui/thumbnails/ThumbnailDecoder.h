#pragma once

#include "core/model/ArtworkData.h"

#include <QImage>
#include <QUrl>

#include <functional>
#include <stop_token>

/// Bytes of a cover become a small square picture with round corners. Thread: any.
namespace ThumbnailDecoder {

/// Device pixels of a side.
int pixels(int side, double ratio);

/// Cuts the middle square out and scales it. Null if the bytes are no picture.
/// \param side, radius device pixels.
QImage decode(const QByteArray& bytes, int side, double radius);

/// The work for one thumbnail; reads the file again where the bytes have been let go.
struct Job {
    ArtworkData artwork;
    QUrl url;
    int side = 0; ///< device-independent pixels, like radius
    int radius = 0;
    double ratio = 1;
    std::function<QByteArray(const QUrl&)> readArtwork;

    QImage operator()(std::stop_token stop) const;
};

} // namespace ThumbnailDecoder
