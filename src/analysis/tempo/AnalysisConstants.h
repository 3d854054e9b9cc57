#pragma once

#include <array>
#include <cstddef>

/// What all steps of the tempo analysis share. The values were chosen together: docs/tempo.md.
namespace BPMAnalyzer {

constexpr int kSampleRate = 11025; ///< Hz
constexpr int kFrameSize = 1024;   ///< samples of one spectrum
constexpr int kHop = 256;          ///< samples from one frame to the next

/// Frames a second: the rate of all onset series.
constexpr double kEnvelopeRate = double(kSampleRate) / kHop;
/// A lag of L frames is a tempo of kTempoConstant / L BPM.
constexpr double kTempoConstant = 60 * kEnvelopeRate;

/// The onset series in the order that every per-series step keeps.
enum Series { MelFlux, LowBand, EnergyFlux, HighFlux, ComplexFlux };
constexpr std::size_t kSeriesCount = 5;

/// The share of each series wherever the five are fused.
constexpr std::array<float, kSeriesCount> kSeriesWeights{0.30F, 0.26F, 0.10F, 0.13F, 0.21F};

} // namespace BPMAnalyzer
