#pragma once

#include "analysis/tempo/AnalysisConstants.h"

#include <array>
#include <span>

namespace BPMAnalyzer {

/// Compares each spectrum with those before it, bin by bin: how much louder it has become, and how far its point in the
/// plane lies from where a steady tone would have moved it. All values of a kind stand in an array of their own, and
/// phases are kept as points on the unit circle, so that neither angles nor cosines are needed and the loop over the
/// bins becomes vector code. Thread: one object per thread.
class SpectralChange {
public:
    /// Looks at the bins \p first to \p end - 1; \p end at most kFrameSize / 2.
    SpectralChange(int first, int end);

    /// \param points   real and imaginary parts in turn, unscaled, from bin 0, at least \p end pairs, their squares
    ///                 within a float. Not std::complex, on which compilers make no vector code.
    void advance(std::span<const float> points);

    /// Of the last spectrum, at the index of the bin; 0 before the first.
    std::span<const float> amplitudes() const { return m_bins.amplitudes; }
    /// max(0, growth) of log(1 + 32 amplitude).
    std::span<const float> increases() const { return m_bins.increases; }
    /// log(1 + 48 deviation), the deviation from where a steady tone would be.
    std::span<const float> deviations() const { return m_bins.deviations; }

private:
    using Values = std::array<float, kFrameSize / 2>;
    /// One object, so that compilers see that the arrays do not overlap.
    struct Bins {
        Values amplitudes{};
        Values logarithms{};
        Values increases{};
        Values deviations{};
        // Phases as points on the unit circle; a bin without sound counts as at phase 0.
        Values cosines{};
        Values sines{};
        Values earlierCosines{};
        Values earlierSines{};
    };
    static void advance(Bins& bins, const float* __restrict points, int first, int end);

    const int m_first;
    const int m_end;
    Bins m_bins;
};

/// Sum of values in eight parts, which vector code can add at the same time.
float sumOf(std::span<const float> values);
/// The same of their squares.
float sumOfSquares(std::span<const float> values);

} // namespace BPMAnalyzer
