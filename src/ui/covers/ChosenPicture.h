#pragma once

#include "ui/drops/PictureSource.h"

#include <QSize>
#include <QString>

/// A picture that the user chose for covers, and what the window says of it.
struct ChosenPicture {
    QByteArray bytes; ///< of a picture file
    QSize size;       ///< upright, in pixels
    QString format;   ///< as it is commonly written: "JPEG"
    QImage preview;   ///< at most kPreviewSide on its longer side, never enlarged

    /// Chosen: the card's picture at four times the pixels.
    static constexpr int kPreviewSide = 384;
    /// Chosen: covers with a shorter side look blurred on players and large displays.
    static constexpr int kSmallSide = 500; // pixels

    /// Whether nothing of it is cut off where covers are square.
    bool isSquare() const { return size.width() == size.height(); }
    /// Whether the card warns that it will look blurred.
    bool isSmall() const { return std::min(size.width(), size.height()) < kSmallSide; }
    /// A PNG goes into files as it is; all others are written as JPEG.
    bool isKept() const { return bytes.startsWith(QByteArrayView("\x89PNG")); }

    /// Reads and decodes; takes up to a second. Nothing for what is no picture, what cannot be read, and what is larger
    /// than a cover may be (see ArtworkImage). Thread: any.
    static std::optional<ChosenPicture> prepare(const PictureSource& source);
};
