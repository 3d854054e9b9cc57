#pragma once

#include "tags/AudioTechnicalInfo.h"

#include <optional>

/// The sound of a file as its container describes it.
struct Sound {
    std::optional<double> seconds; ///< nothing when unknown
    AudioTechnicalInfo::Details details;
};
