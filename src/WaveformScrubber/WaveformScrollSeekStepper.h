#pragma once

#include <QString>

#include <optional>

/// What the wheel does over the waveform; raw values "volume" and "seek" stand in the preference waveformScrollAction.
enum class WaveformScrollAction { Volume, Seek };

/// The text that the preference keeps.
QString rawValue(WaveformScrollAction action);
/// Nothing for an unknown value.
std::optional<WaveformScrollAction> waveformScrollActionFromRawValue(const QString& raw);

/// Turns the movements of a wheel or a trackpad into steps of three seconds. One object per view. Thread: main.
class WaveformScrollSeekStepper {
public:
    /// Where a movement comes from.
    enum class Source {
        Wheel,   ///< clicks: each is a step, whatever its size
        Precise, ///< a trackpad's points: a step for every eight, at most one per event
    };

    /// \return seconds to seek by, positive for a positive movement; nothing as long as the way is too short for a
    /// step.
    std::optional<double> consume(double rawDelta, Source source);

private:
    double m_accumulatedPreciseDelta = 0;
};
