#pragma once

#include "tags/bytes/ByteSource.h"

#include <optional>

class ItemCollector;

/// ID3v2.2, 2.3 and 2.4 tags. Frames are met in order; only bodies of text, comment and picture frames are read.
namespace Id3v2 {

/// Full size in bytes of the tag whose first ten bytes these are, header and footer included; nothing if it is none.
std::optional<qint64> tagSize(QByteArrayView header);
/// Adds the fields of the tags that begin \p range, and cuts them off the range. Of several, one after another, the
/// first is the one that programs show and edit: it is listed last, and the others fill its gaps. Nothing happens
/// without one.
void read(ByteRange& range, ItemCollector& items);

} // namespace Id3v2
