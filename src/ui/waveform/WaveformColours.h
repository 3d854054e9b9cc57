#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

class Preferences;
enum class Appearance;

/// The two colours of a waveform.
struct WaveformColours {
    QColor played;
    QColor unplayed;

    bool operator==(const WaveformColours&) const = default;

    /// The choices of the preference waveformColorPreset, in the order of the settings; the last is "custom".
    static const QStringList& presets();
    /// \param preset an unknown one counts as "white". \param custom the colour of "custom"; brought so far towards
    /// the text's colour that it can be read on this appearance.
    static WaveformColours of(const QString& preset, const QColor& custom, Appearance appearance);
    /// What the preferences say.
    static WaveformColours of(const Preferences& preferences, Appearance appearance);
    /// Whether a preference decides on the colours.
    static bool isKey(const Preferences& preferences, const QString& key);
    /// The preference's own colour, whatever it looks like.
    static QColor custom(const Preferences& preferences);
};

/// Contrast of two opaque colours, 1 to 21, as accessibility guidelines define it.
double contrast(const QColor& a, const QColor& b);
