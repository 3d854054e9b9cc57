#pragma once

#include <QUrl>

#include <optional>

/// The first frame header of an MP3 file, read directly: the last resort for its bit rate.
namespace MP3Header {

/// Bits per second of the first thing that looks like a frame header behind the leading ID3v2 tag, within the first
/// 128 KiB. Nothing for a name without the extension "mp3", a file that cannot be read, and where none is found.
/// A file of variable bit rate reports its first frame. Blocks; not for the main thread.
std::optional<double> bitRate(const QUrl& url);

/// The same of bytes from the begin of a file, all of which are looked at. Thread: any.
std::optional<double> bitRate(QByteArrayView head);

} // namespace MP3Header
