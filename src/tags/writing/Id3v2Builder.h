#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

struct AudioTags;

/// Makes ID3v2 tags and their parts. Pure.
namespace Id3v2Builder {

/// A whole ID3v2.3 tag without padding, or nothing if every field is empty and there is no picture.
QByteArray tag(const AudioTags& tags, const std::optional<QByteArray>& artwork);
/// Whether a tag that tag() made tells its true size: one of 2^28 bytes and more cannot, and must not be written.
bool fits(const QByteArray& tag);
/// What stands in a text frame: the encoding's byte, then UTF-16 with its mark and without an end.
QByteArray textPayload(const QString& text);
/// What stands in a picture frame of a front cover.
QByteArray picturePayload(const QByteArray& picture);

} // namespace Id3v2Builder
