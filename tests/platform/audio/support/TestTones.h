#pragma once

#include <QString>

#include <vector>

/// Long tones that never repeat, made by a real encoder.
namespace TestTones {

/// Noise-like but repeatable sound. \param arguments of the encoder in front of the path, between blanks. \return
/// whether it was made.
bool make(const QString& path, double seconds, int sampleRate, const QString& arguments = {}, int channels = 2);
/// Every second sample from the first on.
std::vector<float> left(const std::vector<float>& stereo);

} // namespace TestTones
