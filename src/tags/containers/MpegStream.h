#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

/// MPEG audio of layers I to III without container.
namespace MpegStream {

/// \param stream what the tags in front and behind leave; junk before the first frame is stepped over.
/// \return nothing if no frame is followed by another one within the first mebibyte.
/// The length is what a Xing, Info or VBRI header tells, else the size by the bit rate, else counted frame by frame.
std::optional<Sound> read(const ByteRange& stream);

} // namespace MpegStream
