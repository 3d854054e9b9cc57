#pragma once

#include "analysis/key/Chroma.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace MusicalKeyAnalyzer {

/// What the bins of a spectrum mean as pitches at one sample rate: everything about a peak that does not depend on its
/// height, worked out once. Immutable.
class PitchMap {
public:
    /// One share of a peak for one bin of the chroma.
    struct Share {
        std::uint8_t bin = 0; ///< of ChromaBins
        double weight = 0;    ///< cos² of the distance, 1 where the bin is hit
    };
    /// What a peak on one bin of the spectrum counts for.
    struct Pitch {
        std::array<Share, 4> shares = {};
        int shareCount = 0;
        double divisor = 1; ///< high notes count less: the overtones of low ones are there
        bool isBass = false;

        std::span<const Share> used() const { return {shares.data(), static_cast<std::size_t>(shareCount)}; }
    };

    /// \param sampleRate   in hertz, above 0.
    explicit PitchMap(int sampleRate);

    /// The bins of the spectrum that are listened to, both included: 55 to 4,200 Hz, never 0 Hz and never half the
    /// sample rate. None if lowest() is above top().
    int lowest() const { return m_lowest; }
    int top() const { return m_top; }
    /// \param bin   from lowest() to top().
    const Pitch& pitch(int bin) const { return m_pitches[static_cast<std::size_t>(bin - m_lowest)]; }

private:
    int m_lowest;
    int m_top;
    std::vector<Pitch> m_pitches; ///< from m_lowest to m_top
};

} // namespace MusicalKeyAnalyzer
