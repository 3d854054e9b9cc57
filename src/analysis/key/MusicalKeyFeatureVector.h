#pragma once

#include <QJsonObject>

#include <array>
#include <optional>
#include <vector>

/// What is left of a track for the question of its key: kilobytes instead of megabytes, so it can be kept.
struct MusicalKeyFeatureVector {
    /// Some seconds of the track.
    struct Section {
        std::array<double, 12> chroma = {};     ///< loudness of the pitch classes from C upwards, of length 1
        std::array<double, 12> bassChroma = {}; ///< the same of the low notes; all 0 if there are none
        double tuningCents = 0;                 ///< -100/3, 0 or 100/3
        double tonalQuality = 0;                ///< 0 to 1

        bool operator==(const Section&) const = default;
    };
    /// One to eight, in the order of the track.
    std::vector<Section> sections;

    bool operator==(const MusicalKeyFeatureVector&) const = default;

    /// Keys as the members are named.
    QJsonObject toJson() const;
    /// Nothing if a key is missing or of another type, or a list of pitch classes has not 12 numbers.
    static std::optional<MusicalKeyFeatureVector> fromJson(const QJsonObject& object);
};
