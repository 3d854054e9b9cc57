#pragma once

#include <QByteArrayView>

#include <optional>

/// The sizes in front of ID3v2 tags, in the two ways of reading them.
namespace TagSizes {

/// Bytes of the header in front of a tag; an ID3v2.4 footer has as many.
constexpr qint64 kId3HeaderSize = 10;

/// Whether these bytes are the header of an ID3v2 tag.
bool isId3Header(QByteArrayView bytes);
/// Four bytes of seven bits each, whose high bits are ignored. \p bytes has at least four.
quint32 folded(QByteArrayView bytes);
/// The same; nothing if a high bit is set or bytes are missing.
std::optional<quint32> syncsafe(QByteArrayView bytes);

} // namespace TagSizes
