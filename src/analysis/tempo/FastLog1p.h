#pragma once

#include <bit>
#include <cstdint>

namespace BPMAnalyzer {

/// log(1 + x) for 0 <= x < 1e30, wrong by at most 2e-7 of the result; 0 for 0. Without branches and calls, so that
/// compilers make vector code of a loop over it. Polynomial: the single-precision logarithm of the Cephes library
/// (S. Moshier) for mantissas from sqrt(1/2) to sqrt(2).
inline float fastLog1p(float x)
{
    constexpr std::int32_t kSqrtHalfBits = 0x3f3504f3;
    const float u = 1.0F + x;
    const std::int32_t bits = std::bit_cast<std::int32_t>(u);
    const std::int32_t exponent = (bits - kSqrtHalfBits) >> 23;
    const float mantissa = std::bit_cast<float>(bits - exponent * (1 << 23));
    // What the sum 1 + x has lost is given back to the mantissa.
    const float scale = std::bit_cast<float>((127 - exponent) * (1 << 23));
    const float f = (mantissa - 1.0F) + (x - (u - 1.0F)) * scale;
    const float square = f * f;
    float p = 7.0376836292e-2F;
    p = p * f - 1.1514610310e-1F;
    p = p * f + 1.1676998740e-1F;
    p = p * f - 1.2420140846e-1F;
    p = p * f + 1.4249322787e-1F;
    p = p * f - 1.6668057665e-1F;
    p = p * f + 2.0000714765e-1F;
    p = p * f - 2.4999993993e-1F;
    p = p * f + 3.3333331174e-1F;
    const float e = static_cast<float>(exponent);
    // ln 2 in two parts, the first of few digits, so that its product is exact.
    const float small = p * f * square - 2.12194440e-4F * e - 0.5F * square;
    return (f + small) + 0.693359375F * e;
}

} // namespace BPMAnalyzer
