#include "ui/waveform/WaveformColours.h"

#include "platform/Preferences.h"
#include "ui/theme/ThemeColours.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPlayedContrast = 3;     // to the ground; what guidelines ask of graphics
constexpr double kUnplayedShare = 0.36;   // of a colour over the ground: seen as a shape, yet clearly behind
constexpr double kNeutralShareDark = 0.5; // of the secondary text's colour over the ground
constexpr double kNeutralShareLight = 0.45;

struct Tone {
    QLatin1StringView preset;
    QRgb dark, light;
};

// Each is bright on dark ground and deep on light ground.
constexpr Tone kTones[]{
    {QLatin1StringView("mint"), 0xFF4FD6A5, 0xFF0E8F66},
    {QLatin1StringView("violet"), 0xFFA78BFA, 0xFF6D4AE0},
    {QLatin1StringView("orange"), 0xFFF59E4B, 0xFFC2590A},
    {QLatin1StringView("rose"), 0xFFFB7CA2, 0xFFD02E63},
};

QColor mixed(const QColor& over, const QColor& under, double share)
{
    const auto part = [share](int above, int below) {
        return static_cast<int>(std::lround(above * share + below * (1 - share)));
    };
    return {part(over.red(), under.red()), part(over.green(), under.green()), part(over.blue(), under.blue())};
}

double linear(double component)
{
    return component <= 0.03928 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour)
{
    return 0.2126 * linear(double(colour.redF())) + 0.7152 * linear(double(colour.greenF())) +
           0.0722 * linear(double(colour.blueF()));
}

QColor readable(const QColor& colour, const ThemeColours& theme)
{
    constexpr double kStep = 0.05;
    QColor result = colour;
    for (double share = 0; share <= 1 && contrast(result, theme.surface) < kPlayedContrast; share += kStep)
        result = mixed(theme.text, colour, share);
    return result;
}

} // namespace

double contrast(const QColor& a, const QColor& b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

const QStringList& WaveformColours::presets()
{
    static const QStringList kPresets{QStringLiteral("white"),  QStringLiteral("accent"), QStringLiteral("mint"),
                                      QStringLiteral("violet"), QStringLiteral("orange"), QStringLiteral("rose"),
                                      QStringLiteral("custom")};
    return kPresets;
}

WaveformColours WaveformColours::of(const QString& preset, const QColor& custom, Appearance appearance)
{
    const ThemeColours& theme = ThemeColours::of(appearance);
    const bool isDark = appearance == Appearance::Dark;
    const auto toned = [&](const QColor& colour) {
        return WaveformColours{colour, mixed(colour, theme.surface, kUnplayedShare)};
    };
    if (preset == QLatin1StringView("accent"))
        return toned(theme.accent);
    if (preset == QLatin1StringView("custom"))
        return toned(readable(custom, theme));
    for (const Tone& tone : kTones) {
        if (preset == tone.preset)
            return toned(QColor::fromRgb(isDark ? tone.dark : tone.light));
    }
    // "white" names the waveform, not its played part: a calm grey, bright on dark ground and dark on light ground,
    // over which the accent reads at a glance. Played in white over grey, the cursor looks like a change of the music.
    return {theme.accent, mixed(theme.text2, theme.surface, isDark ? kNeutralShareDark : kNeutralShareLight)};
}

bool WaveformColours::isKey(const Preferences& preferences, const QString& key)
{
    return key == preferences.waveformColorPreset.key() || key == preferences.waveformCustomRed.key() ||
           key == preferences.waveformCustomGreen.key() || key == preferences.waveformCustomBlue.key();
}

QColor WaveformColours::custom(const Preferences& preferences)
{
    const auto component = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(component(preferences.waveformCustomRed.get()),
                            component(preferences.waveformCustomGreen.get()),
                            component(preferences.waveformCustomBlue.get()));
}

WaveformColours WaveformColours::of(const Preferences& preferences, Appearance appearance)
{
    return of(preferences.waveformColorPreset.get(), custom(preferences), appearance);
}
