#pragma once

#include <QString>

#include <vector>

/// Float samples, little-endian, as a file holds them without a header. Errors: std::system_error if it cannot be read.
std::vector<float> rawSamples(const QString& path);
