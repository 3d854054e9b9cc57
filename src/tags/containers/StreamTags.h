#pragma once

#include "tags/bytes/ByteSource.h"

/// Tags in the middle of a stream, where files were joined or a broadcast was cut.
namespace StreamTags {

/// Where the ID3 tags that begin at \p offset end; \p offset itself if none begins there.
qint64 endAfter(const ByteRange& stream, qint64 offset);

} // namespace StreamTags
