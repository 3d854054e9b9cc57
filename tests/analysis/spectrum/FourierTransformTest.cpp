#include "analysis/spectrum/FourierTransform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>

namespace {

using std::numbers::pi;

/// The sum as it is defined, in double precision.
std::complex<double> definedValue(const std::vector<float>& frame, size_t bin)
{
    std::complex<double> sum = 0;
    for (size_t n = 0; n < frame.size(); ++n)
        sum += double(frame[n]) * std::polar(1.0, -2 * pi * double((bin * n) % frame.size()) / double(frame.size()));
    return sum;
}

} // namespace

TEST(FourierTransform, GivesTheDefinedSum)
{
    std::minstd_rand random(7);
    std::uniform_real_distribution<float> level(-1, 1);
    for (const int size : {32, 1024, 8192}) {
        std::vector<float> frame(static_cast<size_t>(size));
        std::ranges::generate(frame, [&] { return level(random); });
        FourierTransform transform(size);
        for (int round = 0; round < 2; ++round) { // the second finds used buffers
            std::ranges::copy(frame, transform.frame().begin());
            transform.transform();
        }
        std::vector<float> powers(static_cast<size_t>(size / 2 + 1));
        transform.squaredMagnitudes(powers);
        ASSERT_EQ(transform.spectrum().size(), powers.size());
        const double tolerance = 2e-6 * size;
        for (size_t bin = 0; bin<powers.size(); bin += size> 1024 ? 97 : 1) {
            const std::complex<double> expected = definedValue(frame, bin);
            EXPECT_NEAR(transform.spectrum()[bin].real(), expected.real(), tolerance) << size << ' ' << bin;
            EXPECT_NEAR(transform.spectrum()[bin].imag(), expected.imag(), tolerance) << size << ' ' << bin;
            EXPECT_NEAR(powers[bin], std::norm(expected), 1e-5 * size) << size << ' ' << bin;
        }
    }
}

TEST(FourierTransform, TheWindowKeepsTheEnergy)
{
    const std::vector<float> window = FourierTransform::hannWindow(1024);
    double energy = 0;
    for (const float value : window)
        energy += double(value) * value;
    EXPECT_NEAR(energy / 1024, 1, 1e-6);
    EXPECT_EQ(window.front(), 0);
    EXPECT_EQ(window[1], window[1023]) << "periodic: the highest value stands at N/2";
    EXPECT_NEAR(window[512], 2 * std::sqrt(2.0 / 3.0), 1e-6);
}

TEST(FourierTransform, RefusesOtherSizes)
{
    for (const int size : {-1, 0, 1, 16, 1000, 131072})
        EXPECT_THROW(FourierTransform{size}, std::invalid_argument) << size;
}
