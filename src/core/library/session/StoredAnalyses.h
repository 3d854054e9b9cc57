#pragma once

#include "core/library/session/SessionRecord.h"

class JsonReader;

/// The results of analyses as the session file holds them. The reader fails where a key is missing or of another type.
namespace StoredAnalyses {

/// Reads an object; what it gives is of no use where the reader has failed by then.
MusicalKeyAnalysis readKeyAnalysis(JsonReader& json);
CachedBPMEstimate readEstimate(JsonReader& json);

} // namespace StoredAnalyses
