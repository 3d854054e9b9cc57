#pragma once

#include "tags/bytes/ByteSource.h"

#include <optional>

/// MPEG-4 files whose sound comes in fragments: what the movie says in front covers none of it.
namespace Mp4Fragments {

/// Length by the movie's own sum ("mehd"), in units of the movie's time scale; nothing where it is not told or 0.
/// \param movie the body of "moov".
std::optional<double> statedDuration(const ByteRange& movie);
/// Length of a track by its fragments, in units of the track's time scale; nothing without fragments. Goes over all
/// atoms of the file.
std::optional<double> countedDuration(const ByteRange& file, const ByteRange& movie, quint32 trackID);

} // namespace Mp4Fragments
