#pragma once

#include <QByteArray>

#include <vector>

/// Compares what was recorded with what should have been heard.
namespace Recordings {

constexpr double kQuantisationStep = 1.0 / 32768;

/// Raw floats as they stand in memory.
std::vector<float> samplesOf(const QByteArray& bytes);
/// The first place where both differ by more than a quantisation step; the shorter one's length if there is none.
size_t firstDifference(const std::vector<float>& one, const std::vector<float>& other);
/// Recordings begin with the first sample that is not 0.
std::vector<float> withoutSilenceInFront(const std::vector<float>& samples);

} // namespace Recordings
