#pragma once

#include "tags/bytes/ByteSource.h"

/// Tags in the middle of a stream, where files were joined or a broadcast was cut.
namespace StreamTags {

/// Where the ID3 tags that begin at \p offset end; \p offset itself if none begins there. A tag that claims more than
/// there is counts as none.
qint64 endAfter(const ByteRange& stream, qint64 offset);

} // namespace StreamTags
