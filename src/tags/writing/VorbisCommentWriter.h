#pragma once

#include "tags/writing/TagEdits.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

#include <functional>
#include <optional>

struct AudioTags;

/// Bodies of a FLAC file's comment and picture blocks. Source: RFC 9639, sections 8.6 and 8.8.
namespace VorbisCommentWriter {

/// The comments of the fields that are not empty, in their fixed order; nothing if all are.
QByteArray comments(const AudioTags& tags);
/// "KEY=value" in UTF-8 of each field that is not empty, in their fixed order.
QByteArrayList texts(const AudioTags& tags);
/// The block without the comments of the chosen fields and with the new title and album behind the others; the
/// vendor, every other comment and what follows them stay byte for byte. \return nothing if the block is broken.
std::optional<QByteArray> filtered(QByteArrayView block, const TagEdits& edits);
/// The same for comments that are chosen otherwise, and with others behind those that stay.
using IsDropped = std::function<bool(QByteArrayView comment)>;
std::optional<QByteArray> filtered(QByteArrayView block, const IsDropped& isDropped, const QByteArrayList& added);
/// A block of the new title and album alone; nothing if there is neither.
QByteArray added(const TagEdits& edits);
/// A front cover without a description. Its type is PNG where the bytes begin so, else JPEG; width and height are
/// left at 0, "not told".
QByteArray picture(const QByteArray& artwork);

} // namespace VorbisCommentWriter
