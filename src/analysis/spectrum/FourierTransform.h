#pragma once

#include <complex>
#include <memory>
#include <span>
#include <vector>

/// Discrete Fourier transform of one real frame at a time, for all analyses; SIMD through libavutil. The set-up is made
/// once and the buffers are kept. Thread: one object per thread.
class FourierTransform {
public:
    /// \param size   samples of a frame, N: a power of two, 32 to 65536.
    /// Errors: std::invalid_argument for another size; std::runtime_error if the transform cannot be set up.
    explicit FourierTransform(int size);
    ~FourierTransform();
    FourierTransform(FourierTransform&&) noexcept;
    FourierTransform& operator=(FourierTransform&&) noexcept;

    /// N, as it was given.
    int size() const;
    /// The N real samples of the next frame, to be filled before transform(), which may spoil them.
    std::span<float> frame();
    /// Transforms frame().
    void transform();
    /// The N/2 + 1 values from 0 Hz to half the sample rate, unscaled: a full-scale sine on a bin has the magnitude
    /// N/2. Valid until the next transform().
    std::span<const std::complex<float>> spectrum() const;
    /// Squared magnitudes of the lower values of spectrum(), as many as \p result takes; at most N/2 + 1.
    void squaredMagnitudes(std::span<float> result) const;

    /// The periodic Hann window of N points with the energy of a rectangle: sqrt(2/3) * (1 - cos(2 pi n / N)).
    static std::vector<float> hannWindow(int size);

private:
    struct Setup;
    std::unique_ptr<Setup> m_setup;
};
