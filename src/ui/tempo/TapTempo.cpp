#include "ui/tempo/TapTempo.h"

#include <cmath>

namespace {
constexpr double kSlowest = 30;
constexpr double kFastest = 400;
} // namespace

void TapTempo::tap(async::Duration now)
{
    if (!m_taps.empty() && now - m_taps.back() >= kPause)
        m_taps.clear();
    m_taps.push_back(now);
    if (m_taps.size() > kMostTaps)
        m_taps.erase(m_taps.begin());
}

/// The slope of the line through the taps: each of them counts, not the first and the last alone.
std::optional<int> TapTempo::bpm() const
{
    if (count() < kLeastTaps)
        return std::nullopt;
    const double middle = (count() - 1) / 2.0;
    double above = 0;
    double below = 0;
    for (int beat = 0; beat < count(); ++beat) {
        const std::chrono::duration<double> time = m_taps[static_cast<size_t>(beat)] - m_taps.front();
        above += (beat - middle) * time.count();
        below += (beat - middle) * (beat - middle);
    }
    const double bpm = 60 * below / above;
    return bpm >= kSlowest && bpm <= kFastest ? std::optional(static_cast<int>(std::lround(bpm))) : std::nullopt;
}
