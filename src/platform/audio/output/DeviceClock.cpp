#include "platform/audio/output/DeviceClock.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {
// Devices take their turns with a jitter of some milliseconds. Chosen: what a turn says is approached within a fifth of
// a second, and taken at once where it is further away than any jitter.
constexpr double kApproachSeconds = 0.2;
constexpr double kJumpSeconds = 0.08;
} // namespace

double DeviceClock::systemSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double DeviceClock::at(double systemTime)
{
    const DeviceTurn& turn = m_turns.read();
    // Between turns the sound of the last one goes out bit by bit; when the next one is late, time waits for it.
    const double told = std::clamp(turn.soundBefore + (systemTime - turn.time), turn.soundBefore, turn.soundAfter);
    const double elapsed = std::max(systemTime - m_shownAt, 0.0);
    const double smooth = m_shown + elapsed;
    const double error = told - smooth;
    const bool isFlowing = told < turn.soundAfter;
    double shown = told;
    if (isFlowing && std::abs(error) < kJumpSeconds)
        shown = smooth + error * std::min(elapsed / kApproachSeconds, 1.0);
    m_shown = std::max(m_shown, std::min(shown, turn.soundAfter));
    m_shownAt = systemTime;
    return m_shown;
}
