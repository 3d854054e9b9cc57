#pragma once

#include <complex>
#include <span>
#include <vector>

namespace BPMAnalyzer {

/// Compares each spectrum with those before it, bin by bin: how much louder it has become, and how far its point in the
/// plane lies from where a steady tone would have moved it. All values of a bin stand in arrays of their own, and
/// phases are kept as points on the unit circle, so that neither angles nor cosines are needed and the loop over the
/// bins becomes vector code. Thread: one object per thread.
class SpectralChange {
public:
    /// Looks at the bins \p first to \p end - 1 of frames of \p frameSize samples.
    SpectralChange(int frameSize, int first, int end);

    /// \param spectrum   unscaled, from bin 0, at least \p end values, their squares within a float.
    void advance(std::span<const std::complex<float>> spectrum);

    /// Of the last spectrum, at the index of the bin; 0 before the first.
    std::span<const float> amplitudes() const { return m_amplitudes; }
    /// max(0, growth) of log(1 + 32 amplitude).
    std::span<const float> increases() const { return m_increases; }
    /// log(1 + 48 deviation), the deviation from where a steady tone would be.
    std::span<const float> deviations() const { return m_deviations; }

private:
    /// Points on the unit circle; a bin without sound counts as at phase 0.
    struct Phases {
        std::vector<float> cosines;
        std::vector<float> sines;
    };

    const int m_first;
    const int m_end;
    const float m_scale;
    std::vector<float> m_amplitudes;
    std::vector<float> m_logarithms;
    std::vector<float> m_increases;
    std::vector<float> m_deviations;
    Phases m_last;
    Phases m_beforeLast;
};

/// Sum of values in eight parts, which vector code can add at the same time.
float sumOf(std::span<const float> values);
float sumOfSquares(std::span<const float> values);

} // namespace BPMAnalyzer
