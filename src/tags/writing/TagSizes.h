#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
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

/// Where the sound of an MP3 file begins: behind all ID3v2 tags, footers included.
/// \param read gives exactly so many bytes at an offset, or throws.
/// \param path for errors: FileError (fileReadCorruptFile) for a tag that passes the end of the file.
qint64 behindId3Tags(const std::function<QByteArray(qint64 offset, qint64 count)>& read, qint64 fileSize,
                     const QString& path);

} // namespace TagSizes
