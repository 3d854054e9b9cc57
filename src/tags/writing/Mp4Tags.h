#pragma once

#include "tags/writing/TagEdits.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

struct AudioTags;

/// The tags of an MPEG-4 file: the list of items below its movie's user data.
namespace Mp4Tags {

/// The items of the five fields that this container gets, those that are not empty.
QByteArray items(const AudioTags& tags);
/// The movie's body with these items in the place of every tag that it had; without items without any tag. All else
/// stays, chapters included. \return nothing if an atom passes its parent's end.
std::optional<QByteArray> replaced(QByteArrayView movie, const QByteArray& items);

/// Whether the tags are in the form of keys and numbered values, which filtered() does not know.
bool hasNumberedKeys(QByteArrayView movie);
/// The movie's body without the items of the chosen fields and with the new title and album behind the others; all
/// else stays byte for byte. \return nothing if an atom passes its parent's end.
std::optional<QByteArray> filtered(QByteArrayView movie, const TagEdits& edits);

/// One item of text; nothing for an empty one.
QByteArray textItem(QByteArrayView type, const QString& text);
/// The atom "meta" around a list of items; nothing without items.
QByteArray metaAtom(const QByteArray& items);
/// Where the children of "meta" begin: some writers leave version and flags out.
qsizetype metaHeaderSize(QByteArrayView meta);
/// Texts that QuickTime and 3GPP files keep beside the list.
bool isOldText(QByteArrayView type);

} // namespace Mp4Tags
