#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

/// AAC in ADTS frames without container.
namespace AacStream {

/// \param stream what the tags in front and behind leave.
/// \return nothing if no frame is found. Goes through the whole stream: nothing else tells its length.
/// The bit rate is the average of the frames with their headers; where half of the source's limits is spent the rest
/// is estimated.
std::optional<Sound> read(const ByteRange& stream);

} // namespace AacStream
