#pragma once

#include "core/model/Track.h"

/// Made-up rows for pictures of the window.
namespace DemoLibrary {

/// Two folders of tracks with drawn covers; every field that the lists show is filled in. \param repeats how many times
/// the dozen is repeated. \param music the folder that the tracks are in.
QList<Track> tracks(int repeats, const QString& music);

} // namespace DemoLibrary
