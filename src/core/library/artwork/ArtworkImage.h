#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

/// Pictures chosen by the user become what is written into files. Thread: any; may take a second, for workers.
namespace ArtworkImage {

/// A PNG that is not too large stays as it is; every other picture is decoded, turned upright and encoded as JPEG of
/// quality 92. Nothing if the bytes are no picture, or one that no file should carry: see kMaximumBytes and
/// kMaximumPixels.
std::optional<QByteArray> normalizedArtworkData(const QByteArray& image);

/// A picture that was read.
struct Picture {
    QImage image;      ///< upright; null if it cannot be decoded or has too many pixels
    QSize size;        ///< of the whole picture, upright
    QByteArray format; ///< as the toolkit calls it, e.g. "jpeg"
};
/// Decodes a picture, no larger than \p maximumSide on its longer side (0: as it is) and never enlarged. Its size is
/// asked for beforehand, because JPEG saves most of its work by that.
Picture read(const QByteArray& bytes, int maximumSide);
/// The image without transparency: covers lie on white.
QImage onWhite(const QImage& image);

/// The picture for the list, at most kShownSide on its longer side. Null if it cannot be decoded.
QImage decoded(const QByteArray& image);

/// Lets the toolkit decode pictures of up to kMaximumPixels, which it refuses by itself beyond a third of that. To be
/// called before any picture is read, by the thread that starts the program.
void allowLargePictures();
/// Whether the picture has more than kMaximumPixels by its header, which alone is read.
bool isTooLarge(const QByteArray& image);

/// Larger covers are refused. Chosen: an uncompressed picture of 3,000 pixels a side; FLAC and many players take less.
constexpr qsizetype kMaximumBytes = 32 * 1024 * 1024;
/// Chosen: decoding stays below 400 MB.
constexpr qint64 kMaximumPixels = 100'000'000;
/// Chosen: twice the largest cover that the window shows.
constexpr int kShownSide = 640;

} // namespace ArtworkImage
