#pragma once

#include <QList>
#include <QString>

#include <optional>

/// The two modes, in this order wherever both are walked.
enum class MusicalKeyMode { Minor, Major };

/// A key: a tonic and a mode, written as a Camelot code, by which DJs mix harmonically.
struct MusicalKey {
    int pitchClass = 0; ///< 0 to 11, 0 is C
    MusicalKeyMode mode = MusicalKeyMode::Minor;

    bool operator==(const MusicalKey&) const = default;

    /// 1 to 12, the place on the wheel.
    int camelotNumber() const;
    /// The number and "A" for minor or "B" for major, e.g. "8A" for A minor.
    QString camelot() const;

    /// The key of a code as normalizedCamelotCode() gives it; nothing for any other text.
    static std::optional<MusicalKey> fromCamelotCode(const QString& code);
    /// The code of a text that is one but for case, blanks around it and leading zeros, e.g. "8A" for " 08a ".
    static std::optional<QString> normalizedCamelotCode(const QString& text);
    /// The code of what a tag holds: a code, or the name of a key such as "Am", "A minor", "C♯" or "Db maj". A note
    /// without a mode is major. Nothing for any other text.
    static std::optional<QString> camelotCode(const QString& fromMetadataValue);
    /// The first code that stands by itself in a file name; its extension does not count.
    static std::optional<QString> embeddedCamelotCode(const QString& inFileName);
};

/// The key of a track as an analysis heard it.
struct MusicalKeyAnalysis {
    /// Another key that the same sound may be heard in.
    struct Alternative {
        MusicalKey key;
        double relativeStrength = 0; ///< 0 to 1, against the best

        bool operator==(const Alternative&) const = default;
    };

    MusicalKey key;
    double confidence = 0;  ///< 0 to 1
    double tuningCents = 0; ///< how far the music is off 440 Hz, in cents: the median of steps of a third of a semitone
    /// At most four, best first, key among them.
    QList<Alternative> alternatives;

    bool operator==(const MusicalKeyAnalysis&) const = default;
};
