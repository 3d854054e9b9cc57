#pragma once

#include <QList>

/// The tempo of a track as an analysis heard it.
struct TempoEstimate {
    /// Another tempo that the same rhythm may be counted in.
    struct Alternative {
        double bpm = 0;              ///< a whole number in value
        double relativeStrength = 0; ///< 0 to 1, against the strongest candidate

        bool operator==(const Alternative&) const = default;
    };

    double bpm = 0;        ///< a whole number in value, 70 to 140
    double confidence = 0; ///< 0 to 1
    /// At most eight, strongest first; the first need not be bpm.
    QList<Alternative> alternatives;

    bool operator==(const TempoEstimate&) const = default;
};
