#pragma once

#include <QUrl>

#include <optional>

/// What an audio file says about its sound besides its length.
namespace AudioTechnicalInfo {

struct Details {
    double bitRate = 0; ///< bits per second, the average where it varies; 0 when unknown
    int bitDepth = 0;   ///< bits per sample of one channel; 0 when unknown or where the compression has none
    quint64 audioDataByteCount = 0; ///< bytes of the coded sound alone; 0 when unknown

    bool operator==(const Details&) const = default;
};

/// Nothing if the file cannot be opened or holds no sound that is known. Blocks; not for the main thread.
std::optional<Details> read(const QUrl& url);

} // namespace AudioTechnicalInfo
