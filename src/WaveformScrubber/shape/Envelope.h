#pragma once

#include <memory>
#include <vector>

/// The shape of a whole file: amplitudes from 0 to 1 at equal distances in time, ready to be looked at. Shared, never
/// null and never changed. Thread: any.
using Envelope = std::shared_ptr<const std::vector<float>>;

/// Values of every envelope that the cache hands out. On disk, never change without a new format version.
constexpr int kEnvelopeSampleCount = 4096;

/// Whether work gives way to everything else (it is done ahead) or the user looks at an empty place meanwhile.
enum class LowImpact { No, Yes };
