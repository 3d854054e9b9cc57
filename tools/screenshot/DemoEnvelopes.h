#pragma once

#include "core/model/Track.h"

/// Made-up waveforms for made-up rows.
namespace DemoEnvelopes {

/// Makes the files of the first rows, empty, and puts an envelope for each into a cache folder, so that the window
/// finds them by its own road.
void write(const QList<Track>& tracks, const QString& cacheFolder);
/// The row whose envelope is never done, for pictures of that.
int endlessRow();

} // namespace DemoEnvelopes
