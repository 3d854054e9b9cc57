#pragma once

#include "analysis/key/Chroma.h"
#include "core/model/MusicalKey.h"

/// What music in each key looks like.
namespace MusicalKeyProfiles {

/// The learned profile of one key; both parts are of length 1 and start at C, whatever the tonic.
struct Reference {
    MusicalKeyAnalyzer::PitchClasses chroma;
    MusicalKeyAnalyzer::PitchClasses bass;
};

/// Each key has a profile of its own: they are learned and no rotations of one another.
const Reference& reference(const MusicalKey& key);
/// How loudly the pitches sound in any key of the mode, starting at the tonic.
const MusicalKeyAnalyzer::PitchClasses& plainTemplate(MusicalKeyMode mode);

} // namespace MusicalKeyProfiles
