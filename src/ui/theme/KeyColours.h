#pragma once

#include <QColor>
#include <QString>

#include <optional>

/// A key of the Camelot wheel.
struct CamelotKey {
    int number = 1;       ///< 1 to 12
    bool isMajor = false; ///< letter B

    bool operator==(const CamelotKey&) const = default;
    /// E.g. "8A".
    QString code() const;
};

namespace KeyColours {

/// The key that a tag's text names: a Camelot code ("8A", "08a") or a note name ("Am", "F#m", "Bb", "C major",
/// "Gbmin"). Nothing for any other text.
std::optional<CamelotKey> parse(const QString& text);
/// The colour of the key's place on the wheel, the same wherever a key is named.
QColor colour(const CamelotKey& key);
/// Near black: the colour of text on any of them.
QColor chipText();

} // namespace KeyColours
