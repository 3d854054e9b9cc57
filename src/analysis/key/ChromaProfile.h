#pragma once

#include "analysis/key/AnalysisRanges.h"
#include "analysis/key/PitchMap.h"
#include "analysis/spectrum/FourierTransform.h"
#include "platform/process/WorkerClock.h"

#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace MusicalKeyAnalyzer {

/// How loudly each pitch sounds over some seconds, on average over the frames that have a pitch at all.
struct ChromaProfile {
    ChromaBins chroma = {};
    ChromaBins bass = {}; ///< of the notes up to 420 Hz
};

/// Listens to samples. One per job. Thread: one at a time.
class ChromaListener {
public:
    /// \param sampleRate   in hertz, above 0.
    /// \param lowImpact    sleep 1 ms on every twelfth frame.
    /// Errors: std::runtime_error if the transform cannot be set up.
    ChromaListener(int sampleRate, bool lowImpact, std::stop_token stop, const WorkerClock& clock);

    /// The profile of \p samples, at any level; values that are no numbers silence their frames. Nothing with fewer
    /// than three frames of kFrameSize samples that have a pitch.
    /// Errors: async::Cancelled, looked for on every twelfth frame.
    std::optional<ChromaProfile> profile(std::span<const float> samples);

private:
    void rest() const;
    bool transform(std::span<const float> frame);
    float highestPower() const;
    void addPeak(int bin, ChromaProfile& frame) const;
    ChromaProfile peaks(float highest) const;

    PitchMap m_pitches;
    bool m_lowImpact;
    std::stop_token m_stop;
    WorkerClock m_clock;
    FourierTransform m_transform;
    std::vector<float> m_window;
    std::vector<float> m_powers; ///< squared magnitudes of the bins up to the top one
};

} // namespace MusicalKeyAnalyzer
