#include "WaveformScrubber/WaveformScrollSeekStepper.h"

#include <cmath>

namespace {

constexpr double kStepSeconds = 3;
/// Chosen: points on a trackpad that a finger does not move by accident.
constexpr double kPointsPerStep = 8;

} // namespace

QString rawValue(WaveformScrollAction action)
{
    return action == WaveformScrollAction::Volume ? QStringLiteral("volume") : QStringLiteral("seek");
}

std::optional<WaveformScrollAction> waveformScrollActionFromRawValue(const QString& raw)
{
    for (const WaveformScrollAction action : {WaveformScrollAction::Volume, WaveformScrollAction::Seek}) {
        if (raw == rawValue(action))
            return action;
    }
    return std::nullopt;
}

std::optional<double> WaveformScrollSeekStepper::consume(double rawDelta, Source source)
{
    if (rawDelta == 0)
        return std::nullopt;
    if (source == Source::Wheel) {
        m_accumulatedPreciseDelta = 0;
        return std::copysign(kStepSeconds, rawDelta);
    }
    if (m_accumulatedPreciseDelta * rawDelta < 0)
        m_accumulatedPreciseDelta = 0;
    m_accumulatedPreciseDelta += rawDelta;
    if (std::abs(m_accumulatedPreciseDelta) < kPointsPerStep)
        return std::nullopt;
    m_accumulatedPreciseDelta -= std::copysign(kPointsPerStep, rawDelta);
    return std::copysign(kStepSeconds, rawDelta);
}
