#pragma once

#include <QtGlobal>

#include <optional>

/// What a file says about its sound besides its length.
struct SoundDetails {
    double bitRate = 0; ///< bits per second, the average where it varies; 0 when unknown
    int bitDepth = 0;   ///< bits per sample of one channel; 0 when unknown or where the compression has none
    quint64 audioDataByteCount = 0; ///< bytes of the coded sound alone; 0 when unknown

    bool operator==(const SoundDetails&) const = default;
};

/// The sound of a file as its container describes it.
struct Sound {
    std::optional<double> seconds; ///< nothing when unknown
    SoundDetails details;
};
