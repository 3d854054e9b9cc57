#pragma once

#include "analysis/key/MusicalKeyFeatureVector.h"

#include <span>

/// A section as it is defined, step by step in double precision, with a Fourier sum instead of a fast transform and
/// nothing worked out in advance: slow, and with no code in common with the program but the learned profiles.
MusicalKeyFeatureVector::Section definedSection(std::span<const float> samples, int sampleRate);
